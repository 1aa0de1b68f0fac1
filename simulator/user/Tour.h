#pragma once

#include "BoxWatcher.h"

#include <QDir>

class QMenu;
class QWidget;

namespace kavelo {

class AdvancedSettingDialogViewController;
class MainWindowViewController;
class SimulatedUnit;

/// A round through all windows on a simulated five-pedal unit, for machines without a display:
/// shows, edits and restores it with clicks and keys, prints what the windows say, and saves a
/// picture of every window. It stops where a window does not do what it was asked to.
class Tour
{
public:
    Tour(MainWindowViewController &window, QWidget &panel, SimulatedUnit &unit,
         const QString &pictureFolder);

    /// Makes the round; needs a running event loop. Returns the exit status: 0, or 1 with a line
    /// on standard error that says where a window did not do what it should.
    [[nodiscard]] int run();

private:
    [[nodiscard]] bool showUnit();
    /// Changes the unit and makes it fail, in the panel beside the window.
    [[nodiscard]] bool drivePanel();
    [[nodiscard]] bool showEveryNumberOfPedals();
    [[nodiscard]] bool askAboutSettingBeyondStandard();
    [[nodiscard]] bool editPedal();
    [[nodiscard]] bool showAdvancedPages();
    [[nodiscard]] bool showNotices();
    [[nodiscard]] bool restore();

    [[nodiscard]] bool waitForPedals(int pedals);
    /// Waits until every expected box has come and gone; false when one does not.
    [[nodiscard]] bool areBoxesAnswered();
    /// Opens the Advanced dialog from the panel; null when it does not come.
    [[nodiscard]] AdvancedSettingDialogViewController *openAdvancedDialog(int pedal);
    void printPedals();
    void picture(QWidget &widget, const QString &name);
    /// The next message box is photographed and answered with `key`.
    void expectBox(const QString &pictureName, Qt::Key key);
    /// Opens the application menu and chooses its item number `item`, from 0, with the keyboard.
    void chooseFromMenu(int item);
    [[nodiscard]] QMenu &menu();

    MainWindowViewController &m_window;
    QWidget &m_panel; ///< the simulator panel
    SimulatedUnit &m_unit;
    QDir m_pictures;
    BoxWatcher m_boxes;
};

} // namespace kavelo
