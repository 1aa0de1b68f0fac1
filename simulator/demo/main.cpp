#include "AppDelegate.h"
#include "ApplicationIcon.h"
#include "MainWindowViewController.h"
#include "MenuClass.h"
#include "PedalSetting.h"
#include "PedalSettingDialog.h"
#include "ProgramStyle.h"
#include "SimulatedBus.h"
#include "SimulatedUnit.h"
#include "SimulatorPanel.h"
#include "Tour.h"
#include "UnitOptions.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLabel>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <memory>

namespace {

struct Options
{
    kavelo::UnitOptions unit;
    QCommandLineOption unplugged{QStringLiteral("unplugged"),
                                 QStringLiteral("Start with the unit unplugged.")};
    QCommandLineOption tour{
        QStringLiteral("tour"),
        QStringLiteral("Operate and check all windows, save their pictures in <folder>, and quit."),
        QStringLiteral("folder")};
};

void setUp(kavelo::SimulatedUnit &unit, const QCommandLineParser &parser, const Options &options)
{
    options.unit.apply(parser, unit);
    if (!parser.isSet(options.unplugged)) {
        kavelo::bus::plugIn(unit);
    }
}

/// Puts the panel below the utility's window if the screen has room for both, so that neither
/// covers the other.
void placeBelow(QWidget &panel, QWidget &window)
{
    // Before the window is shown a window manager may still move it.
    static_cast<void>(QTest::qWaitForWindowExposed(&window));
    const QRect frame = window.frameGeometry();
    const QRect screen = window.screen()->availableGeometry();
    const int panelHeight = panel.height() + frame.height() - window.height();
    const int spare = screen.height() - frame.height() - panelHeight;
    if (spare >= 0) {
        window.move(frame.left(), screen.top() + spare / 2);
        panel.move(frame.left(), window.y() + frame.height());
    }
}

/// Prints the help and ends the program if the command line asks for it. This needs no display.
void answerHelp(QCommandLineParser &parser, const QCommandLineOption &help, int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    parser.parse(QCoreApplication::arguments());
    if (parser.isSet(help)) {
        parser.showHelp();
    }
}

/// Opens the Advanced dialog as the main window's Advanced buttons would. Those are never enabled.
void openAdvancedDialog(kavelo::MainWindowViewController &window, int pedal, bool settingEnabled)
{
    if (QApplication::activeModalWidget() != nullptr) {
        return; // a message box waits for its answer
    }
    kavelo::SelectedPedalNo = pedal;
    kavelo::PedalName =
        window.findChild<QLabel *>(QStringLiteral("labelPedal%1Name").arg(pedal))->text();
    kavelo::SettingEnabled = settingEnabled;
    window.SetPedal2Advanced_clicked();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("kavelo-demo"));
    const Options options;
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The Kavelo utility on a simulated unit."));
    const QCommandLineOption help = parser.addHelpOption();
    options.unit.addTo(parser);
    parser.addOptions({options.unplugged, options.tour});
    answerHelp(parser, help, argc, argv);
    QApplication application(argc, argv);
    QApplication::setStyle(new kavelo::ProgramStyle);
    QApplication::setWindowIcon(kavelo::applicationIcon());
    options.unit.process(parser);

    kavelo::SimulatedUnit unit;
    setUp(unit, parser, options);
    kavelo::AppDelegate delegate(application);
    kavelo::MainWindowViewController window;
    kavelo::MenuClass menu(window.menuItems());
    delegate.menu = &menu;
    kavelo::SimulatorPanel panel(unit);
    QObject::connect(&panel, &kavelo::SimulatorPanel::advancedDialogRequested, &window,
                     [&window](int pedal, bool settingEnabled) {
                         openAdvancedDialog(window, pedal, settingEnabled);
                     });
    window.show();
    placeBelow(panel, window);
    panel.setAttribute(Qt::WA_ShowWithoutActivating); // the keyboard stays with the utility
    panel.show();
    window.activateWindow();

    // Made only when asked for, because the tour answers all message boxes in place of the user.
    std::unique_ptr<kavelo::Tour> tour;
    if (parser.isSet(options.tour)) {
        tour = std::make_unique<kavelo::Tour>(window, panel, unit, parser.value(options.tour));
        QTimer::singleShot(0, &window, [&tour] { QApplication::exit(tour->run()); });
    }
    return QApplication::exec();
}
