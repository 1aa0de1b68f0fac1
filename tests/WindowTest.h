#pragma once

#include "KaveloTest.h"
#include "MainWindowViewController.h"
#include "MenuClass.h"
#include "SettingDialogViewController.h"
#include "SimulatedBus.h"
#include "WindowView.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <vector>

namespace kavelo {

inline const auto ConnectText =
    QStringLiteral("Connect the Kavelo. The Kavelo will be automatically recognized.\n"
                   "If you do not set the Kavelo, exit this application.");
inline const auto SettingsText = QStringLiteral(
    "The current settings for the Kavelo are shown below. \n"
    "If you want to change the settings of a pedal, click the button corresponding to the pedal.");

inline const auto RestoreQuestion =
    QStringLiteral("Settings of this Kavelo will be restored to the initial settings at factory "
                   "shipment. Is it OK with you? \n"
                   "Click [OK] to make the Kavelo return to the initial state. \n"
                   "Click [Cancel] to do nothing.");
inline const auto Restored =
    QStringLiteral("The settings for this Kavelo have been restored to the initial settings.");
inline const auto NotRestored =
    QStringLiteral("An error has occurred.\n"
                   "The settings for this Kavelo could not be restored to the initial settings.");

/// Exchanges of one read of a unit that setFiveModes() has set: version, number of pedals, five
/// pedals, five pieces.
constexpr std::size_t ReadExchanges = 12;

/// The main window on the simulated bus, and what a user sees of it.
class WindowTest : public KaveloTest
{
protected:
    WindowTest() { window.show(); }

    static void setFontSize(int points)
    {
        QApplication::setFont(QFont(QApplication::font().family(), points));
    }
    void plugInAndWait()
    {
        requests.clear();
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); })) << explanation().toStdString();
        EXPECT_LE(requests.size(), ReadExchanges) << "something is asked twice";
        requests.clear();
    }
    void unplugAndWait()
    {
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); })) << explanation().toStdString();
    }

    /// What a test can't go on without: that it isn't there fails the test by its name.
    template <class Object>
    static Object *required(Object *object, QAnyStringView name)
    {
        const std::string missing = name.toString().toStdString() + " is not there, or not alone";
        return object != nullptr ? object : throw std::runtime_error(missing);
    }
    template <class Control>
    Control *find(const char *name, int row = 0)
    {
        const QString wanted =
            QString::fromLatin1(name).replace(QLatin1String("%d"), QString::number(row));
        return required(window.findChild<Control *>(wanted), wanted);
    }
    QLabel *name(int row) { return find<QLabel>("labelPedal%dName", row); }
    QPlainTextEdit *contents(int row)
    {
        return find<QPlainTextEdit>("textboxPedal%dContents", row);
    }
    QPushButton *standard(int row) { return find<QPushButton>("buttonSetPedal%dStandard", row); }
    QPushButton *advanced(int row) { return find<QPushButton>("buttonSetPedal%dAdvanced", row); }
    QString explanation() { return find<QLabel>("labelMainWindowExplanation")->text(); }

    /// How many pedals can be edited.
    int litRows()
    {
        int rows = 0;
        for (int row = 0; row < MaxPedals; ++row) {
            rows +=
                name(row)->isEnabled() && standard(row)->isEnabled() && contents(row)->isVisible();
        }
        return rows;
    }
    bool isBlank()
    {
        return explanation() == ConnectText && window.width() == 680 && litRows() == 0 &&
               !contents(0)->isVisible() && contents(0)->toPlainText().isEmpty();
    }
    /// Whether every pedal of the unit has been read and is shown as the unit has it.
    bool showsUnit(const SimulatedUnit &shown)
    {
        return explanation() == SettingsText && litRows() == shown.memory().numberOfPedals &&
               showsRecords(window, shown);
    }

    /// The dialog of a class that is on screen, or null: a dismissed one may still be there.
    template <class Dialog = PedalSettingDialog>
    Dialog *shownDialog()
    {
        return visibleDialog<Dialog>(window);
    }
    bool isDialogShown() { return shownDialog() != nullptr; }
    PedalSettingDialog *dialog() { return required(shownDialog(), "A pedal's dialog"); }
    /// The controls of a dialog by their objects' names, in which the page at the front, the kind
    /// and a stepper's ending may be left out: "Up" is "PM_radiobuttonUp". A name may be a pattern.
    /// The misspelt "PM_radiobutttonSetNumber" is the outlet's prescribed name.
    template <class Control = QWidget>
    QList<Control *> controls(QAnyStringView name)
    {
        const auto whole = QStringLiteral("^([A-Z]+_)?(radiobutt+on|checkbox|listbox|button|"
                                          "numericupdown)?(%1)(_stepper)?$");
        return dialog()->findChildren<Control *>(QRegularExpression(whole.arg(name.toString())));
    }
    /// The only one of them on screen.
    template <class Control = QWidget>
    Control *control(QAnyStringView name)
    {
        auto shown = controls<Control>(name);
        shown.removeIf([](Control *other) { return !other->isVisible(); });
        return required(shown.size() == 1 ? shown[0] : nullptr, name);
    }

    /// Waits until a window that has come or gone no longer keeps presses away.
    static void settle()
    {
        QTest::qSleep(PressesTakenAfter);
        QCoreApplication::processEvents();
    }
    /// Clicks on the left part of the control: a button's mark, or its title.
    static void click(QWidget *widget)
    {
        QTest::mouseClick(widget, Qt::LeftButton, {}, {10, widget->height() / 2});
        QCoreApplication::sendPostedEvents(); // what writes does so from the event loop
    }
    void click(QAnyStringView name) { click(control(name)); }
    /// Opens a pedal's dialog with the mouse, at rest before and afterwards.
    void openStandard(int pedal)
    {
        settle();
        click(standard(pedal));
        settle();
    }
    /// What assistive technology sees of a control.
    static QAccessibleInterface *assistance(QObject *object)
    {
        return QAccessible::queryAccessibleInterface(object);
    }
    /// Sets a pedal whose setting is a click already to another one, by clicks in the dialog.
    void writeClick(int pedal, const char *choice)
    {
        openStandard(pedal);
        click(choice);
        click("ProgramKavelo");
        EXPECT_TRUE(waitUntil([&] { return !isDialogShown(); }));
    }
    /// Goes round a window's controls with Tab, from `first` on; returns them in their order.
    static std::vector<QWidget *> tabStops(QWidget &shown, QWidget &first)
    {
        EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == &shown; }));
        std::vector<QWidget *> stops;
        first.setFocus();
        while (std::ranges::find(stops, QApplication::focusWidget()) == stops.end()) {
            stops.push_back(QApplication::focusWidget());
            QTest::keyClick(stops.back(), Qt::Key_Tab);
        }
        return stops;
    }

    QAction *restoreItem() { return window.menuItems().InitialStateToolStripMenuItem.get(); }

    MainWindowViewController window;
    MenuClass menu{window.menuItems()};
};

/// Five pedals that all differ, the second of them a sequence of outputs, the third a left click.
inline void setFiveModes(SimulatedUnit &unit)
{
    constexpr std::array Modes{POINTER_MOVE, PLURAL_SIMULTANEOUS_KEY_OUTPUT, SIMPLE_CLICK,
                               OUTPUT_AT_CHANGE, CONTINUOUS_KEY_OUTPUT};
    std::mt19937 random(7);
    for (std::size_t i = 0; i < Modes.size(); ++i) {
        PedalMemory &pedal = unit.memory().pedals.at(i);
        pedal.mode = Modes.at(i);
        std::ranges::generate(pedal.record, [&] { return std::uint8_t(random()); });
        std::ranges::generate(pedal.additional, [&] { return std::uint8_t(random()); });
    }
    unit.memory().pedals[1].record[3] = 0x84;
    // Where a reply has the mode, the last piece has one, too.
    unit.memory().pedals[1].additional[52] = PLURAL_SIMULTANEOUS_KEY_OUTPUT;
    unit.memory().pedals[2].record[0] = 1;
}

} // namespace kavelo
