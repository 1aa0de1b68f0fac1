#pragma once

#include "BoxWatcher.h"
#include "SimulatedUnit.h"

#include <QDir>

class QMenu;
class QWidget;

namespace kavelo {

class AdvancedSettingDialogViewController;
class MainWindowViewController;

/// A tour through all windows with a simulated five-pedal unit, for machines without a display. It
/// shows, edits and restores the unit with clicks and keys, and compares the unit's memory and the
/// texts in the main window with what they must be. It prints the texts and saves a picture of
/// every window. It stops at the first difference.
class Tour
{
public:
    Tour(MainWindowViewController &window, QWidget &panel, SimulatedUnit &unit,
         const QString &pictureFolder);

    /// Makes the tour; needs a running event loop. Returns the exit status: 0, or 1 with a line on
    /// standard error that names the failed step.
    [[nodiscard]] int run();

private:
    // The steps. Each returns whether unit and windows are as they must be.
    [[nodiscard]] bool showUnit();
    /// Changes the unit and makes it fail, by means of the simulator panel.
    [[nodiscard]] bool drivePanel();
    [[nodiscard]] bool listExchanges();
    [[nodiscard]] bool showEveryNumberOfPedals();
    [[nodiscard]] bool askAboutSettingBeyondStandard();
    [[nodiscard]] bool editPedal();
    [[nodiscard]] bool editPedalInAdvancedDialog();
    [[nodiscard]] bool showAdvancedPages();
    [[nodiscard]] bool showNotices();
    [[nodiscard]] bool restore();

    /// Waits until the window shows the unit's records, or no records when the unit is unplugged.
    [[nodiscard]] bool waitForWindow();
    /// Waits until the unit holds `expected` and the window shows it.
    [[nodiscard]] bool waitForMemory(const UnitMemory &expected);
    /// Waits until every expected box has been answered and closed; false when one was not.
    [[nodiscard]] bool waitForBoxes();
    /// Opens the Advanced dialog from the panel; null when it does not come.
    [[nodiscard]] AdvancedSettingDialogViewController *openAdvancedDialog(int pedal);
    void printPedals();
    void picture(QWidget &widget, const QString &name);
    /// Takes a picture of the next message box and answers it with `key`.
    void expectBox(const QString &pictureName, Qt::Key key);
    /// Opens the application menu and chooses its item number `item`, from 0, with the keyboard.
    void chooseFromMenu(int item);
    [[nodiscard]] QMenu &menu();

    MainWindowViewController &m_window;
    QWidget &m_panel; ///< the simulator panel
    SimulatedUnit &m_unit;
    QDir m_pictures;
    bool m_arePicturesSaved = true;
    BoxWatcher m_boxes;
};

} // namespace kavelo
