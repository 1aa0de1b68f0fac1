#include "Tour.h"

#include "AdvancedSettingDialogViewController.h"
#include "MainWindowViewController.h"
#include "PedalSetting.h"
#include "SettingDialogViewController.h"
#include "SimulatedUnit.h"

#include <QAbstractItemView>
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

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace kavelo {
namespace {

/// Time for a window to do what it was asked to.
constexpr int Patience = 20000; // ms

/// Pedals that the round uses: one that the Standard dialog can't show, and one that it edits.
constexpr int PedalBeyondStandard = 0;
constexpr int EditedPedal = 1;
/// Pedals for the Advanced dialog: one that is set to clicks there, and one that moves the pointer.
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

/// Clicks on the left part of the control: a button's mark, or its title.
void click(QWidget &widget)
{
    QTest::qWait(QApplication::doubleClickInterval() + 20); // the window may only just have come
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {10, widget.height() / 2});
}

/// The dialog of this class that is on screen; null when there is none.
template <class Dialog>
Dialog *shownDialog(QWidget &window)
{
    const auto dialogs = window.findChildren<Dialog *>();
    const auto shown = std::ranges::find_if(dialogs, &QWidget::isVisible);
    return shown == dialogs.end() ? nullptr : *shown;
}

} // namespace

Tour::Tour(MainWindowViewController &window, QWidget &panel, SimulatedUnit &unit,
           const QString &pictureFolder)
    : m_window(window)
    , m_panel(panel)
    , m_unit(unit)
    , m_pictures(pictureFolder)
{
    QApplication::setDoubleClickInterval(50); // the round clicks faster than people do
}

int Tour::run()
{
    struct Step
    {
        const char *purpose;
        bool (Tour::*run)();
    };
    constexpr std::array<Step, 8> Steps{{
        {"reading the unit", &Tour::showUnit},
        {"the panel", &Tour::drivePanel},
        {"units of 1 to 5 pedals", &Tour::showEveryNumberOfPedals},
        {"the question about a setting beyond the Standard", &Tour::askAboutSettingBeyondStandard},
        {"editing a pedal", &Tour::editPedal},
        {"the pages of the Advanced dialog", &Tour::showAdvancedPages},
        {"the menu and its notices", &Tour::showNotices},
        {"restoring the factory settings", &Tour::restore},
    }};
    m_pictures.mkpath(QStringLiteral("."));
    for (const Step &step : Steps) {
        if (!(this->*step.run)()) {
            QTextStream(stderr) << "The round stopped at: " << step.purpose << '\n';
            return 1;
        }
    }
    return 0;
}

bool Tour::showUnit()
{
    if (!waitForPedals(MaxPedals)) {
        return false;
    }
    printPedals();
    return true;
}

bool Tour::drivePanel()
{
    for (const auto &[name, value] : {std::pair{"versionMinor", 9},
                                      {"versionRevision", 7},
                                      {"replyDelay", 1},
                                      {"lateness", 70},
                                      {"faultExchange", 1}}) {
        control<QSpinBox>(m_panel, QLatin1String(name)).setValue(value);
    }
    auto &fault = control<QComboBox>(m_panel, QStringLiteral("fault"));
    QTest::keyClick(&fault, Qt::Key_Home);
    QTest::keyClick(&fault, Qt::Key_Down); // "Refuse the send"
    expectBox(QStringLiteral("notice-sending-error"), Qt::Key_Return);
    control<QPushButton>(m_panel, QStringLiteral("replug")).click();
    if (!areBoxesAnswered() || !waitForPedals(MaxPedals)) {
        return false;
    }
    picture(m_panel, QStringLiteral("panel"));
    const auto &exchanges = *control<QTreeView>(m_panel, QStringLiteral("exchanges")).model();
    const bool areListed = exchanges.rowCount() > MaxPedals;
    control<QPushButton>(m_panel, QStringLiteral("clear")).click();
    return areListed && exchanges.rowCount() == 0 &&
           m_unit.memory().version == std::array<std::uint8_t, 3>{2, 9, 7} &&
           m_unit.replyDelay().count() == 1 && m_unit.lateness().count() == 70;
}

bool Tour::showEveryNumberOfPedals()
{
    auto &plug = control<QCheckBox>(m_panel, QStringLiteral("pluggedIn"));
    auto &replug = control<QPushButton>(m_panel, QStringLiteral("replug"));
    for (int pedals = 0; pedals <= MaxPedals; ++pedals) {
        if (plug.isChecked()) {
            plug.click();
        }
        if (!waitForPedals(0) || replug.isEnabled()) {
            return false;
        }
        if (pedals > 0) {
            control<QSpinBox>(m_panel, QStringLiteral("numberOfPedals")).setValue(pedals);
            plug.click();
        }
        if (!waitForPedals(pedals)) {
            return false;
        }
        picture(m_window, QStringLiteral("main-%1-pedals").arg(pedals));
    }
    return true;
}

bool Tour::askAboutSettingBeyondStandard()
{
    expectBox(QStringLiteral("question-beyond-standard"), Qt::Key_Return);
    click(pedalControl<QPushButton>(m_window, "buttonSetPedal%dStandard", PedalBeyondStandard));
    return areBoxesAnswered() && !StandardSettingDialogOpen;
}

bool Tour::editPedal()
{
    click(pedalControl<QPushButton>(m_window, "buttonSetPedal%dStandard", EditedPedal));
    auto *const dialog = shownDialog<SettingDialogViewController>(m_window);
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
    QTest::keyClick(&control<QCheckBox>(*dialog, QStringLiteral("checkboxShift")), Qt::Key_Space);
    picture(*dialog, QStringLiteral("standard-keyboard"));
    expectBox(QStringLiteral("notice-written"), Qt::Key_Return);
    click(control<QPushButton>(*dialog, QStringLiteral("buttonProgramKavelo")));
    const bool isWritten = areBoxesAnswered() && !StandardSettingDialogOpen;
    printPedals();
    return isWritten;
}

AdvancedSettingDialogViewController *Tour::openAdvancedDialog(int pedal)
{
    control<QSpinBox>(m_panel, QStringLiteral("advancedPedal")).setValue(pedal);
    control<QPushButton>(m_panel, QStringLiteral("openAdvanced")).click();
    return SelectedPedalNo == pedal ? shownDialog<AdvancedSettingDialogViewController>(m_window)
                                    : nullptr;
}

bool Tour::showAdvancedPages()
{
    AdvancedSettingDialogViewController *dialog = openAdvancedDialog(ClickedPedal);
    if (dialog == nullptr) {
        return false;
    }
    for (const char *name : {"C_checkboxPluralButtonSimultaneousClick", "C_checkboxRightClick",
                             "C_checkboxCenterClick"}) {
        click(control<QCheckBox>(*dialog, QLatin1String(name)));
    }
    expectBox(QStringLiteral("notice-written-advanced"), Qt::Key_Return);
    click(control<QPushButton>(*dialog, QStringLiteral("buttonOK")));
    if (!areBoxesAnswered()) {
        return false;
    }

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
        dialog = openAdvancedDialog(Pages.at(index).pedal);
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
    return true;
}

bool Tour::showNotices()
{
    menu().popup(m_window.mapToGlobal(QPoint(0, m_window.menuBar()->height())));
    picture(menu(), QStringLiteral("menu"));
    menu().close();
    expectBox(QStringLiteral("notice-quick-start"), Qt::Key_Return);
    chooseFromMenu(1);
    if (!areBoxesAnswered()) {
        return false;
    }
    expectBox(QStringLiteral("notice-version"), Qt::Key_Return);
    chooseFromMenu(2);
    return areBoxesAnswered();
}

bool Tour::restore()
{
    expectBox(QStringLiteral("question-restore"), Qt::Key_Escape);
    expectBox(QStringLiteral("notice-restored"), Qt::Key_Return);
    chooseFromMenu(0);
    if (!areBoxesAnswered()) {
        return false;
    }
    printPedals();
    picture(m_window, QStringLiteral("main-restored"));
    // The utility leaves the bytes alone that a mode does not use.
    control<QPushButton>(m_panel, QStringLiteral("factorySettings")).click();
    return m_unit.memory().pedals == UnitMemory().pedals;
}

bool Tour::waitForPedals(int pedals)
{
    const auto lit = [this] {
        int count = 0;
        for (int pedal = 0; pedal < MaxPedals; ++pedal) {
            count +=
                pedalControl<QPushButton>(m_window, "buttonSetPedal%dStandard", pedal).isEnabled()
                    ? 1
                    : 0;
        }
        return count;
    };
    return QTest::qWaitFor([&] { return !DeviceDetectedChanged && lit() == pedals; }, Patience);
}

bool Tour::areBoxesAnswered()
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
    QTest::qWait(50); // what is due to be painted or moved is so by then
    const QString path = m_pictures.filePath(name + QStringLiteral(".png"));
    if (!widget.grab().save(path)) {
        QTextStream(stderr) << "Could not save " << path << '\n';
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
    QTest::qWait(PressesTakenAfter); // a window may only just have gone
    menu().popup(m_window.mapToGlobal(QPoint(0, m_window.menuBar()->height())));
    for (int i = 0; i <= item; ++i) {
        QTest::keyClick(&menu(), Qt::Key_Down);
    }
    QTest::keyClick(&menu(), Qt::Key_Return);
}

} // namespace kavelo
