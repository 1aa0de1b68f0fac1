#include "Tour.h"

#include "AdvancedSettingDialogViewController.h"
#include "ExchangeText.h"
#include "MainWindowViewController.h"
#include "ModifierName.h"
#include "PedalSetting.h"
#include "SettingDialogViewController.h"
#include "SimulatedUnit.h"
#include "WindowView.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QTextStream>
#include <QTreeView>

#include <array>
#include <cstdio>
#include <utility>
#include <vector>

namespace kavelo {
namespace {

/// Longest time, in ms, that a window may take to show something.
constexpr int Patience = 20000;

/// The pedals that the tour uses. The Standard dialog cannot show the setting of the first one and
/// edits the second one. The Advanced dialog edits the third one and shows all four.
constexpr int PedalBeyondStandard = 0;
constexpr int EditedPedal = 1;
constexpr int ClickedPedal = 2;
constexpr int PointerPedal = 3;

template <class Control>
Control &control(QWidget &window, const QString &name)
{
    auto *found = window.findChild<Control *>(name);
    Q_ASSERT_X(found != nullptr, "Tour", qUtf8Printable(name));
    return *found;
}

template <class Control>
Control &pedalControl(QWidget &window, const char *name, int pedal)
{
    return control<Control>(window, QString::asprintf(name, pedal));
}

/// Clicks on the left part of the control, where a check box or radio button has its mark.
void click(QWidget &widget)
{
    QTest::qWait(QApplication::doubleClickInterval() + 20); // PressGuard ignores earlier clicks
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {10, widget.height() / 2});
}

/// Chooses an item as assistive technology does.
void choose(QComboBox &box, int item)
{
    QAccessible::queryAccessibleInterface(box.view())
        ->child(item)
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::toggleAction());
}

} // namespace

Tour::Tour(MainWindowViewController &window, QWidget &panel, SimulatedUnit &unit,
           const QString &pictureFolder)
    : m_window(window)
    , m_panel(panel)
    , m_unit(unit)
    , m_pictures(pictureFolder)
{
    QApplication::setDoubleClickInterval(50); // the tour clicks faster than people do
}

int Tour::run()
{
    struct Step
    {
        const char *purpose;
        bool (Tour::*run)();
    };
    constexpr std::array<Step, 10> Steps{{
        {"reading the unit", &Tour::showUnit},
        {"the panel", &Tour::drivePanel},
        {"the list of exchanges", &Tour::listExchanges},
        {"units of 1 to 5 pedals", &Tour::showEveryNumberOfPedals},
        {"the question about a setting beyond the Standard", &Tour::askAboutSettingBeyondStandard},
        {"editing a pedal in the Standard dialog", &Tour::editPedal},
        {"editing a pedal in the Advanced dialog", &Tour::editPedalInAdvancedDialog},
        {"the pages of the Advanced dialog", &Tour::showAdvancedPages},
        {"the menu and its notices", &Tour::showNotices},
        {"restoring the factory settings", &Tour::restore},
    }};
    m_pictures.mkpath(QStringLiteral("."));
    for (const Step &step : Steps) {
        if (!(this->*step.run)() || !m_arePicturesSaved) {
            QTextStream(stderr) << "The tour failed at: " << step.purpose << '\n';
            return 1;
        }
    }
    return 0;
}

bool Tour::showUnit()
{
    const UnitMemory before = m_unit.memory();
    if (!waitForMemory(before)) {
        return false;
    }
    printPedals();
    return true;
}

bool Tour::drivePanel()
{
    UnitMemory expected = m_unit.memory();
    expected.version = {2, 9, 7};
    for (const auto &[name, value] : {std::pair{"versionMajor", 2},
                                      {"versionMinor", 9},
                                      {"versionRevision", 7},
                                      {"replyDelay", 1},
                                      {"lateness", 70},
                                      {"faultExchange", 1}}) {
        control<QSpinBox>(m_panel, QLatin1String(name)).setValue(value);
    }
    choose(control<QComboBox>(m_panel, QStringLiteral("fault")), 1); // "Refuse the send"
    expectBox(QStringLiteral("notice-sending-error"), Qt::Key_Return);
    control<QPushButton>(m_panel, QStringLiteral("replug")).click();
    if (!waitForBoxes() || !waitForMemory(expected)) {
        return false;
    }
    picture(m_panel, QStringLiteral("panel"));
    return m_unit.replyDelay().count() == 1 && m_unit.lateness().count() == 70;
}

bool Tour::listExchanges()
{
    auto &clear = control<QPushButton>(m_panel, QStringLiteral("clear"));
    const auto &rows = *control<QTreeView>(m_panel, QStringLiteral("exchanges")).model();
    clear.click();
    std::vector<Exchange> exchanges;
    QObject receiver;
    QObject::connect(&m_unit, &SimulatedUnit::exchanged, &receiver, [&](const Exchange &exchange) {
        if (exchange.outcome == Exchange::Outcome::Answered) {
            exchanges.push_back(exchange);
        }
    });
    // The second request comes before the reply to the first one. The link has asked for neither
    // reply, so the window reads the unit again.
    m_unit.receive({GET_VERSION_NUMBER});
    m_unit.receive({GET_NUMBER_OF_PEDALS});
    if (!QTest::qWaitFor([&] { return exchanges.size() > 2 + MaxPedals; }, Patience) ||
        !waitForWindow()) {
        return false;
    }
    const auto shows = [&rows](int row, int column, const QString &text) {
        return rows.index(row, column).data() == text;
    };
    int row = 0;
    for (const Exchange &exchange : exchanges) {
        if (!shows(row, 1, commandText(exchange)) || !shows(row, 2, hexText(exchange.request)) ||
            !shows(row, 3, hexText(exchange.reply))) {
            return false;
        }
        ++row;
    }
    clear.click();
    return rows.rowCount() == 0;
}

bool Tour::showEveryNumberOfPedals()
{
    auto &plug = control<QCheckBox>(m_panel, QStringLiteral("pluggedIn"));
    auto &replug = control<QPushButton>(m_panel, QStringLiteral("replug"));
    for (int pedals = 0; pedals <= MaxPedals; ++pedals) {
        if (plug.isChecked()) {
            plug.click();
        }
        if (!waitForWindow() || replug.isEnabled()) {
            return false;
        }
        if (pedals > 0) {
            control<QSpinBox>(m_panel, QStringLiteral("numberOfPedals")).setValue(pedals);
            plug.click();
        }
        if (!waitForWindow() || editablePedals(m_window) != pedals) {
            return false;
        }
        picture(m_window, QStringLiteral("main-%1-pedals").arg(pedals));
    }
    return true;
}

bool Tour::askAboutSettingBeyondStandard()
{
    const UnitMemory before = m_unit.memory();
    expectBox(QStringLiteral("question-beyond-standard"), Qt::Key_Return);
    click(pedalControl<QPushButton>(m_window, "buttonSetPedal%dStandard", PedalBeyondStandard));
    return waitForBoxes() && !StandardSettingDialogOpen && waitForMemory(before);
}

bool Tour::editPedal()
{
    // The pedal's key has the modifier Control already.
    UnitMemory expected = m_unit.memory();
    expected.pedals[EditedPedal].record = {LeftControl | LeftShift, 0x1B};
    click(pedalControl<QPushButton>(m_window, "buttonSetPedal%dStandard", EditedPedal));
    auto *const dialog = visibleDialog<SettingDialogViewController>(m_window);
    if (dialog == nullptr) {
        return false;
    }
    auto &tabs = control<QTabWidget>(*dialog, QStringLiteral("tabcontrolOutputMode"));
    tabs.setCurrentIndex(1);
    picture(*dialog, QStringLiteral("standard-mouse"));
    tabs.setCurrentIndex(0);
    click(control<QRadioButton>(*dialog, QStringLiteral("radiobuttonWithModifiers")));
    auto &keys = control<QComboBox>(*dialog, QStringLiteral("listboxKeys"));
    QTest::keyClick(&keys, Qt::Key_X);
    QTest::qWait(PressesTakenAfter); // the dialog has just opened
    QTest::keyClick(&control<QCheckBox>(*dialog, QStringLiteral("checkboxShift")), Qt::Key_Space);
    picture(*dialog, QStringLiteral("standard-keyboard"));
    expectBox(QStringLiteral("notice-written"), Qt::Key_Return);
    click(control<QPushButton>(*dialog, QStringLiteral("buttonProgramKavelo")));
    if (!waitForBoxes() || StandardSettingDialogOpen || !waitForMemory(expected)) {
        return false;
    }
    printPedals();
    return true;
}

AdvancedSettingDialogViewController *Tour::openAdvancedDialog(int pedal)
{
    control<QSpinBox>(m_panel, QStringLiteral("advancedPedal")).setValue(pedal);
    control<QPushButton>(m_panel, QStringLiteral("openAdvanced")).click();
    return SelectedPedalNo == pedal ? visibleDialog<AdvancedSettingDialogViewController>(m_window)
                                    : nullptr;
}

bool Tour::editPedalInAdvancedDialog()
{
    UnitMemory expected = m_unit.memory();
    expected.pedals[ClickedPedal].mode = SIMPLE_CLICK;
    expected.pedals[ClickedPedal].record[0] = 6; // right and middle button
    AdvancedSettingDialogViewController *const dialog = openAdvancedDialog(ClickedPedal);
    if (dialog == nullptr) {
        return false;
    }
    for (const char *name : {"C_checkboxPluralButtonSimultaneousClick", "C_checkboxRightClick",
                             "C_checkboxCenterClick"}) {
        click(control<QCheckBox>(*dialog, QLatin1String(name)));
    }
    expectBox(QStringLiteral("notice-written-advanced"), Qt::Key_Return);
    click(control<QPushButton>(*dialog, QStringLiteral("buttonOK")));
    return waitForBoxes() && waitForMemory(expected);
}

bool Tour::showAdvancedPages()
{
    const UnitMemory before = m_unit.memory();
    struct Page
    {
        int pedal;
        const char *name;
    };
    constexpr std::array<Page, 4> Pages{{{ClickedPedal, "click"},
                                         {EditedPedal, "key-output"},
                                         {PointerPedal, "pointer-movement"},
                                         {PedalBeyondStandard, "multiple-key-output"}}};
    for (std::size_t index = 0; index < Pages.size(); ++index) {
        auto *const dialog = openAdvancedDialog(Pages.at(index).pedal);
        if (dialog == nullptr) {
            return false;
        }
        control<QTabWidget>(*dialog, QStringLiteral("tabcontrolPages"))
            .setCurrentIndex(static_cast<int>(index));
        picture(*dialog, QStringLiteral("advanced-") + QLatin1String(Pages.at(index).name));
        if (Pages.at(index).pedal == PedalBeyondStandard) {
            auto &outputs = control<QComboBox>(*dialog, QStringLiteral("PSKO_listboxOutput"));
            outputs.showPopup();
            picture(*outputs.view()->window(), QStringLiteral("advanced-outputs"));
            outputs.hidePopup();
        }
        QTest::qWait(PressesTakenAfter);
        QTest::keyClick(dialog, Qt::Key_Escape);
    }
    return waitForMemory(before);
}

bool Tour::showNotices()
{
    menu().popup(m_window.mapToGlobal(QPoint(0, m_window.menuBar()->height())));
    picture(menu(), QStringLiteral("menu"));
    menu().close();
    expectBox(QStringLiteral("notice-quick-start"), Qt::Key_Return);
    chooseFromMenu(1);
    if (!waitForBoxes()) {
        return false;
    }
    expectBox(QStringLiteral("notice-version"), Qt::Key_Return);
    chooseFromMenu(2);
    return waitForBoxes();
}

bool Tour::restore()
{
    const UnitMemory expected = restored(m_unit.memory());
    expectBox(QStringLiteral("question-restore"), Qt::Key_Escape); // Escape accepts this question
    expectBox(QStringLiteral("notice-restored"), Qt::Key_Return);
    chooseFromMenu(0);
    if (!waitForBoxes() || !waitForMemory(expected)) {
        return false;
    }
    printPedals();
    picture(m_window, QStringLiteral("main-restored"));
    // Unlike a restore, the panel's button also resets the bytes that a mode does not use.
    control<QPushButton>(m_panel, QStringLiteral("factorySettings")).click();
    return m_unit.memory().pedals == UnitMemory().pedals;
}

bool Tour::waitForWindow()
{
    const auto isShown = [this] {
        return m_unit.isPowered() ? showsRecords(m_window, m_unit) : editablePedals(m_window) == 0;
    };
    return QTest::qWaitFor([&] { return !DeviceDetectedChanged && isShown(); }, Patience);
}

bool Tour::waitForMemory(const UnitMemory &expected)
{
    return waitForWindow() && m_unit.memory() == expected;
}

bool Tour::waitForBoxes()
{
    return QTest::qWaitFor(
        [this] { return m_boxes.isDone() && QApplication::activeModalWidget() == nullptr; },
        Patience);
}

void Tour::printPedals()
{
    QTextStream out(stdout);
    for (int pedal = 0; pedal < NumberOfPedals; ++pedal) {
        out << pedalControl<QLabel>(m_window, "labelPedal%dName", pedal).text() << '\n';
        const QString text =
            pedalControl<QPlainTextEdit>(m_window, "textboxPedal%dContents", pedal).toPlainText();
        for (const QString &line : text.split(QLatin1Char('\n'))) {
            out << "    " << line << '\n';
        }
    }
    out << '\n';
}

void Tour::picture(QWidget &widget, const QString &name)
{
    QTest::qWait(50); // until the widget has been laid out and painted
    const QString path = m_pictures.filePath(name + QStringLiteral(".png"));
    if (!widget.grab().save(path)) {
        QTextStream(stderr) << "Could not save " << path << '\n';
        m_arePicturesSaved = false;
    }
}

void Tour::expectBox(const QString &pictureName, Qt::Key key)
{
    m_boxes.reactWith([this, pictureName, key](QMessageBox &box) {
        picture(box, pictureName);
        QTextStream(stdout) << box.informativeText() << "\n\n";
        BoxWatcher::press(box, key);
    });
}

QMenu &Tour::menu()
{
    return control<QMenu>(m_window, QStringLiteral("menuKavelo"));
}

void Tour::chooseFromMenu(int item)
{
    QTest::qWait(PressesTakenAfter); // a window may just have closed
    menu().popup(m_window.mapToGlobal(QPoint(0, m_window.menuBar()->height())));
    for (int i = 0; i <= item; ++i) {
        QTest::keyClick(&menu(), Qt::Key_Down);
    }
    QTest::keyClick(&menu(), Qt::Key_Return);
}

} // namespace kavelo
