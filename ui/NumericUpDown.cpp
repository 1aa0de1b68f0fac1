#include "NumericUpDown.h"

#include <QIntValidator>
#include <QLineEdit>
#include <QPalette>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

namespace kavelo {

void NumericUpDown::limitText() const
{
    auto *validator = new QIntValidator(stepper->minimum(), stepper->maximum(), textbox);
    QLocale plainDigits = QLocale::c();
    plainDigits.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    validator->setLocale(plainDigits);
    textbox->setValidator(validator);
}

void NumericUpDown::keepReadOnly() const
{
    QPalette palette = textbox->palette();
    palette.setColor(QPalette::Base, QColor(128, 128, 128, 48)); // dims light and dark windows
    textbox->setPalette(palette);
    // Screen readers can set the text of a read-only field.
    QObject::connect(textbox, &QLineEdit::textChanged, stepper,
                     [field = *this] { field.copyStepperToText(); });
}

void NumericUpDown::show(int number) const
{
    const QSignalBlocker blocker(stepper);
    stepper->setValue(number);
    copyStepperToText();
}

void NumericUpDown::copyTextToStepper() const
{
    const QString text = textbox->text();
    bool isNumber = false;
    const double number = text.toDouble(&isNumber); // of any size
    if (isNumber) {
        const QSignalBlocker blocker(stepper);
        stepper->setValue(
            static_cast<int>(std::clamp<double>(number, stepper->minimum(), stepper->maximum())));
    }
    const bool isUnfinished = text.isEmpty() || text == QLatin1Char('0');
    if (!isUnfinished && text != QString::number(stepper->value())) {
        copyStepperToText();
    }
}

void NumericUpDown::copyStepperToText() const
{
    textbox->setText(QString::number(stepper->value()));
}

void NumericUpDown::setEnabled(bool enabled) const
{
    textbox->setEnabled(enabled);
    stepper->setEnabled(enabled);
}

} // namespace kavelo
