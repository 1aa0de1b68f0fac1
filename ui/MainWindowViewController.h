#pragma once

#include "HID_PnP.h"
#include "MenuItems.h"
#include "PressGuard.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <array>
#include <memory>
#include <vector>

class QLabel;
class QPushButton;

namespace kavelo {

namespace Ui {
class MainWindowViewController;
}

struct MainWindowLayout;
struct PedalCaptions;
class PedalTextBox;

/// A restore of the factory settings has been requested. Set by the menu, cleared by the main
/// window before it asks the user to confirm.
inline bool InitialState = false;
/// A dialog may send its record. Cleared by the main window before it opens the Standard dialog,
/// set by that dialog when it has built a record. The Advanced dialog does not change it.
inline bool SettingEnabled = false;
/// Name of the pedal being edited, for the success message and the heading of the Advanced dialog.
/// Set by the main window when it opens the Standard dialog, and by a dialog before it writes.
inline QString PedalName;

/// The main window. It shows the setting of every pedal and follows the unit.
///
/// The main loop of the program is UpdateAppWindow(), called by a timer every 0.1 s. One call (a
/// tick) may wait for the unit, and further ticks run inside that wait. Such a nested tick may read
/// or restore the whole unit. The outer tick then stops what it was doing and lets the unit be read
/// anew.
class MainWindowViewController : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MainWindowViewController)

public:
    explicit MainWindowViewController(QWidget *parent = nullptr);
    ~MainWindowViewController() override;

    /// The only device link of the program.
    HID_PnP plugNPlay{this};

    [[nodiscard]] MenuItems menuItems() const;
    /// Whether a restore has been requested, or a write or a restore is running or waits for the
    /// user's answer. Meanwhile no other write or restore starts, no dialog opens, and an open
    /// dialog is disabled.
    [[nodiscard]] bool isBusy() const { return InitialState || m_activity != Activity::Idle; }

    /// One tick of the main loop.
    void UpdateAppWindow();
    /// Shows the window without a unit: no pedal settings, the explanation how to connect a unit,
    /// the narrow width.
    void InitializeControls();
    /// Shows the setting of pedal `SelectedPedalNo` in its text box.
    void WritePedalContents();
    /// Sends the setting of the selected pedal and the timing parameters to the unit, and shows a
    /// message on success. The device link shows the failures of an exchange. Does nothing while
    /// `SettingEnabled` is false.
    void SettingDialog_OK();
    /// Widens the window to 696 pixels, animated.
    void testchangewidth();

    void buttonSetPedal0Standard_Clicked() { openStandardDialog(0); }
    void buttonSetPedal1Standard_Clicked() { openStandardDialog(1); }
    void buttonSetPedal2Standard_Clicked() { openStandardDialog(2); }
    void buttonSetPedal3Standard_Clicked() { openStandardDialog(3); }
    void buttonSetPedal4Standard_Clicked() { openStandardDialog(4); }

    /// Brings an open dialog to the front. Returns whether there is one.
    [[nodiscard]] bool raiseDialog();
    /// Opens the Advanced dialog for the pedal given by `SelectedPedalNo` and `PedalName`. The
    /// dialog sends a setting only while `SettingEnabled` is true. The caller first checks with
    /// raiseDialog() that no dialog is open.
    void SetPedal2Advanced_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// The controls of one pedal. A row is identified by the pedal's index, not by its position on
    /// the screen.
    struct PedalControls
    {
        QLabel *name;
        PedalTextBox *contents;
        QPushButton *standard;
        QPushButton *advanced;
    };
    /// The task of a tick. ReadAnew reads the unit and shows failures; LookAgain reads it silently.
    enum class Task { Nothing, ReadAnew, Restore, LookAgain };
    /// The state of a write or a restore.
    enum class Activity { Idle, AwaitingUser, Sending };
    class Run;

    void viewDidLoad();
    void viewDidAppear();

    void setWindowWidth(int width);
    void stackControls();
    void applyLayout(const MainWindowLayout &layout);
    void disableRows();
    void enableRow(std::size_t row);
    void restoreFocus(QWidget *before);
    void enableCommands();

    [[nodiscard]] Task nextTask() const;
    void takeUnit();
    void setActivity(Activity activity);
    [[nodiscard]] QWidgetList windows();
    void endRun(const Run &run, bool isSilentLook = false);

    void readUnit(bool MessageOn);
    [[nodiscard]] bool readVersion(bool MessageOn, Run &run);
    [[nodiscard]] bool readNumberOfPedals(bool MessageOn, Run &run);
    [[nodiscard]] bool readPedals(bool MessageOn, Run &run);
    [[nodiscard]] bool readPedal(int pedal, bool MessageOn, Run &run);

    void openStandardDialog(int pedal);
    [[nodiscard]] bool sendSelectedPedal();
    void restoreInitialSettings();
    [[nodiscard]] bool isRestoreWanted();
    [[nodiscard]] bool sendFactorySettings();
    void tellOutcomeOfRestore(bool isRestored) const;

    std::unique_ptr<Ui::MainWindowViewController> m_ui;
    PressGuard m_pressGuard;
    std::array<PedalControls, MaxPedals> m_rows;
    QTimer m_timer{this};
    /// The unit to which the setting arrays and the number of pedals belong; null when there is
    /// none.
    hid::DeviceRef m_unit;
    /// Number of reads, writes and restores so far.
    int m_runs = 0;
    /// Number of silent reads since the last read with messages, write or restore.
    int m_silentLooks = 0;
    /// The last read, write or restore failed. The unit is read once more, without messages, to
    /// show the settings that it holds.
    bool m_readAgain = false;
    bool m_isReading = false;
    Activity m_activity = Activity::Idle;
    /// The widget of each window that had the focus before it was disabled.
    std::vector<QPointer<QWidget>> m_focusBefore;
    bool m_isIdle = true;
    bool m_appeared = false;
    bool m_closing = false;
};

} // namespace kavelo
