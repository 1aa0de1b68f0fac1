#pragma once

#include "WindowTest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTabWidget>

namespace kavelo {

/// Functions that operate a dialog and read what it shows.
class DialogTest : public WindowTest
{
protected:
    /// Replaces the setting that was read from the unit.
    static void load(std::size_t pedal, std::uint8_t mode, const CommonRecord &record)
    {
        OutputMode.at(pedal) = mode;
        CommonData.at(pedal) = record;
    }
    QTabWidget *tabs() { return control<QTabWidget>("tabcontrol.*"); }
    std::string label(const char *name)
    {
        return required(controls<QLabel>(name).value(0), name)->text().toStdString();
    }

    /// Operates controls with keys or as assistive technology does. For example, the steps
    /// "SetNumber NumberOfRepeats=5" press a button and set a number.
    void perform(const std::string &steps)
    {
        for (const QString &step :
             QString::fromStdString(steps).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            auto *used = control(step.section(QLatin1Char('='), 0, 0));
            const QString value = step.section(QLatin1Char('='), 1);
            if (qobject_cast<QAbstractButton *>(used) != nullptr) {
                assistance(used)->actionInterface()->doAction(
                    QAccessibleActionInterface::toggleAction());
            } else if (auto *text = qobject_cast<QLineEdit *>(used)) {
                text->end(false);
                const QString backspaces(text->text().size(), QLatin1Char('\b'));
                QTest::keyClicks(text->focusProxy(), backspaces + value);
            } else if (qobject_cast<QComboBox *>(used) != nullptr) {
                for (int row = -1; row < value.toInt(); ++row) {
                    QTest::keyClick(used, row < 0 ? Qt::Key_Home : Qt::Key_Down);
                }
            } else {
                assistance(used)->valueInterface()->setCurrentValue(value.toInt());
            }
        }
    }

    /// The names of the visible buttons that are on, in their order.
    std::string checkedButtons()
    {
        const QRegularExpression kind(QStringLiteral("^([A-Z]+_)?(radiobutt+on|checkbox)"));
        QStringList names;
        for (const auto *button : dialog()->findChildren<QAbstractButton *>()) {
            if (button->isVisible() && button->isChecked()) {
                names << button->objectName().remove(kind);
            }
        }
        return names.join(QLatin1Char(' ')).toStdString();
    }
    /// Number of enabled controls with these names, including those on hidden tabs.
    auto countEnabled(const char *names)
    {
        return std::ranges::count_if(controls(names), &QWidget::isEnabled);
    }
    /// The accessible names of the visible controls in the order of Tab. Those with "+" get the
    /// focus by Tab, those with "-" do not.
    std::string tabOrder()
    {
        const std::vector<QWidget *> stops = tabStops(*dialog(), *tabs());
        std::string names;
        QWidget *next = stops.front();
        do {
            if (next->isVisible() && next->focusPolicy() != Qt::NoFocus &&
                next->focusProxy() == nullptr) {
                const bool isStop = std::ranges::find(stops, next) != stops.end();
                names += (isStop ? " +" : " -");
                names += assistance(next)->text(QAccessible::Name).toStdString();
            }
            next = next->nextInFocusChain();
        } while (next != stops.front());
        return names;
    }
};

} // namespace kavelo
