#pragma once

#include "WindowTest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTabWidget>

namespace kavelo {

/// One of the dialogs that set a pedal: what it shows, and what a user does in it. Controls are
/// called by their names without the page and the kind: "Up" is "PM_radiobuttonUp".
class DialogTest : public WindowTest
{
protected:
    /// Puts another setting in the place of the one that has been read.
    static void load(std::size_t pedal, std::uint8_t mode, const CommonRecord &record)
    {
        OutputMode.at(pedal) = mode;
        CommonData.at(pedal) = record;
    }
    PedalSettingDialog *dialog() { return shownDialog<PedalSettingDialog>(); }
    QTabWidget *tabs() { return dialog()->findChild<QTabWidget *>(); }
    std::string label(const char *name)
    {
        return dialog()->findChild<QLabel *>(QLatin1String(name))->text().toStdString();
    }

    /// The one control of this name on screen.
    template <class Control = QWidget>
    Control *in(QAnyStringView name)
    {
        const auto pattern = QStringLiteral("^([A-Z]+_)?(radiobutt+on|checkbox|listbox|button|"
                                            "numericupdown)?%1(_stepper)?$");
        auto found =
            dialog()->findChildren<Control *>(QRegularExpression(pattern.arg(name.toString())));
        found.removeIf([](Control *control) { return !control->isVisible(); });
        EXPECT_EQ(found.size(), 1) << name.toString().toStdString();
        return found.value(0);
    }
    void click(const char *name)
    {
        WindowTest::click(in(name));
        QCoreApplication::sendPostedEvents(); // what writes does so from the event loop
    }

    /// Takes steps with keys or as assistive technology does: "SetNumber NumberOfRepeats=5" presses
    /// a button and sets a number.
    void take(const std::string &steps)
    {
        for (const QString &step :
             QString::fromStdString(steps).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            auto *control = in(step.section(QLatin1Char('='), 0, 0));
            const QString value = step.section(QLatin1Char('='), 1);
            auto *assistance = QAccessible::queryAccessibleInterface(control);
            if (qobject_cast<QAbstractButton *>(control) != nullptr) {
                assistance->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
            } else if (auto *text = qobject_cast<QLineEdit *>(control)) {
                text->end(false);
                const QString backspaces(text->text().size(), QLatin1Char('\b'));
                QTest::keyClicks(text->focusProxy(), backspaces + value);
            } else if (qobject_cast<QComboBox *>(control) != nullptr) {
                for (int row = -1; row < value.toInt(); ++row) {
                    QTest::keyClick(control, row < 0 ? Qt::Key_Home : Qt::Key_Down);
                }
            } else {
                assistance->valueInterface()->setCurrentValue(value.toInt());
            }
        }
    }

    /// The buttons on screen that are on, in their order.
    std::string checked()
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
    /// How many of the controls whose whole names match can be used.
    auto enabled(const char *pattern)
    {
        const QRegularExpression names{QLatin1String(pattern)};
        return std::ranges::count_if(dialog()->findChildren<QWidget *>(names), &QWidget::isEnabled);
    }
    /// What screen readers call the controls on screen, in Tab's order. Tab stops where there's
    /// "+".
    std::string controls()
    {
        const std::vector<QWidget *> stops = tabStops(*dialog(), *tabs());
        std::string names;
        QWidget *control = stops.front();
        do {
            if (control->isVisible() && control->focusPolicy() != Qt::NoFocus &&
                control->focusProxy() == nullptr) {
                const bool isStop = std::ranges::find(stops, control) != stops.end();
                auto *assistance = QAccessible::queryAccessibleInterface(control);
                names += (isStop ? " +" : " -") + assistance->text(QAccessible::Name).toStdString();
            }
            control = control->nextInFocusChain();
        } while (control != stops.front());
        return names;
    }
};

} // namespace kavelo
