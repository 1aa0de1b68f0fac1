#include "NumericUpDown.h"

#include <QEvent>
#include <QLineEdit>

#include <algorithm>
#include <limits>
#include <optional>

namespace kavelo {
namespace {

/// The whole number in a text, limited to the range of an int. Spaces around it are ignored.
std::optional<int> wholeNumberIn(const QString &text)
{
    const QString trimmed = text.trimmed();
    const bool isNegative = trimmed.startsWith(QLatin1Char('-'));
    const auto digits = trimmed.mid(isNegative ? 1 : 0).toUcs4();
    if (digits.isEmpty() || !std::ranges::all_of(digits, qOverload<char32_t>(&QChar::isDigit))) {
        return std::nullopt;
    }
    double number = 0;
    for (const char32_t digit : digits) {
        number = 10 * number + QChar::digitValue(digit);
    }
    constexpr double Most = std::numeric_limits<int>::max();
    number = std::min(number, Most);
    return static_cast<int>(isNegative ? -number : number);
}

} // namespace

NumericUpDown::NumericUpDown(QWidget *parent)
    : QSpinBox(parent)
{
    setKeyboardTracking(false);
    // The step for assistive technology. Qt reads it from this property; without it the step is a
    // tenth of the range.
    setProperty("stepSize", singleStep());
    // The line edit is renamed at once, because screen readers do not take it for a text field
    // under its Qt name.
    connect(this, &QObject::objectNameChanged, this, [this](QString name) {
        lineEdit()->setObjectName(
            name.replace(QLatin1String("_stepper"), QLatin1String("_textbox")));
    });
    connect(lineEdit(), &QLineEdit::textChanged, this, [this] {
        if (lineEdit()->isModified()) {
            return;
        }
        // The text was set by assistive technology, not typed.
        if (!isEnabled()) {
            lineEdit()->setText(textFromValue(value()));
        }
        interpretText();
    });
}

void NumericUpDown::choose(int value)
{
    if (isEnabled()) {
        setValue(value);
    }
}

bool NumericUpDown::isTextReadOnly() const
{
    return lineEdit()->isReadOnly();
}

void NumericUpDown::setTextReadOnly(bool readOnly)
{
    lineEdit()->setReadOnly(readOnly);
    QPalette dimmed;
    if (readOnly) {
        dimmed.setColor(QPalette::Base, QColor(128, 128, 128, 32)); // for light and dark windows
    }
    setPalette(dimmed);
}

bool NumericUpDown::event(QEvent *event)
{
    if (event->type() == QEvent::Polish) {
        lineEdit()->setAccessibleName(accessibleName()); // set by the form
    }
    return QSpinBox::event(event);
}

QValidator::State NumericUpDown::validate(QString &text, int & /*position*/) const
{
    if (isTextReadOnly()) {
        return text == textFromValue(value()) ? QValidator::Acceptable : QValidator::Invalid;
    }
    const std::optional<int> number = wholeNumberIn(text);
    if (text.trimmed().isEmpty() || (number == 0 && minimum() > 0)) {
        return QValidator::Intermediate;
    }
    return number ? QValidator::Acceptable : QValidator::Invalid;
}

int NumericUpDown::valueFromText(const QString &text) const
{
    return std::clamp(wholeNumberIn(text).value_or(value()), minimum(), maximum());
}

} // namespace kavelo
