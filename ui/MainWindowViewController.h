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

/// A restore of the factory settings has been asked for. Set by the menu, cleared by the main
/// window when it asks whether to restore.
inline bool InitialState = false;
/// A dialog may send its record. Cleared by the main window before it opens the Standard dialog,
/// set by that dialog when it has built a record. The Advanced dialog never sets it.
inline bool SettingEnabled = false;
/// Name of the pedal being edited, for the success message and the Advanced dialog's heading. Set
/// by the main window when it opens the Standard dialog only.
inline QString PedalName;

/// The main window: shows every pedal's setting and keeps itself in step with the unit.
///
/// Its tick of 0.1 s is the program's main loop. A tick may wait for the unit, and ticks run inside
/// that wait too: a nested one may read the whole unit or restore it. The outer one then breaks off
/// and has the unit read afresh.
class MainWindowViewController : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MainWindowViewController)

public:
    explicit MainWindowViewController(QWidget *parent = nullptr);
    ~MainWindowViewController() override;

    /// The one device link of the program.
    HID_PnP plugNPlay{this};

    [[nodiscard]] MenuItems menuItems() const;
    /// Whether a write or a restore runs, waits for the user's answer or waits to be asked about.
    /// No other one begins and no dialog opens meanwhile; an open dialog is disabled.
    [[nodiscard]] bool isBusy() const { return InitialState || m_activity != Activity::Idle; }

    /// One tick of the main loop.
    void UpdateAppWindow();
    /// Empties the window: no pedal, the connect explanation, the narrow width.
    void InitializeControls();
    /// Shows the setting of pedal `SelectedPedalNo` in its text box.
    void WritePedalContents();
    /// Sends the selected pedal's row of the arrays and the timing parameters to the unit and
    /// reports success; failures of an exchange are the device link's to report. Does nothing while
    /// `SettingEnabled` is false.
    void SettingDialog_OK();
    /// Widens the window to 696, animated.
    void testchangewidth();

    void buttonSetPedal0Standard_Clicked() { openStandardDialog(0); }
    void buttonSetPedal1Standard_Clicked() { openStandardDialog(1); }
    void buttonSetPedal2Standard_Clicked() { openStandardDialog(2); }
    void buttonSetPedal3Standard_Clicked() { openStandardDialog(3); }
    void buttonSetPedal4Standard_Clicked() { openStandardDialog(4); }

    /// Brings an open dialog to the front; returns whether there is one.
    [[nodiscard]] bool raiseDialog();
    /// Opens the Advanced dialog on the pedal that `SelectedPedalNo` and `PedalName` name. Its
    /// pages write only while `SettingEnabled` is true.
    void SetPedal2Advanced_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// The controls of one pedal. "Row" is the pedal's index, not a place on screen.
    struct PedalControls
    {
        QLabel *name;
        PedalTextBox *contents;
        QPushButton *standard;
        QPushButton *advanced;
    };
    /// What a tick finds to do.
    enum class Task { Nothing, ReadAnew, Restore, LookAgain };
    /// How far a write or a restore is.
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
    void tellOutcomeOfRestore(bool isRestored);

    std::unique_ptr<Ui::MainWindowViewController> m_ui;
    PressGuard m_pressGuard;
    std::array<PedalControls, MaxPedals> m_rows;
    QTimer m_timer{this};
    /// The unit that the setting arrays and the number of pedals are about; null when none is.
    hid::DeviceRef m_unit;
    /// Reads, writes and restores so far.
    int m_runs = 0;
    /// Silent looks since the last read with messages, write or restore.
    int m_silentLooks = 0;
    /// The last run has failed somewhere: look what the unit really holds, without complaining
    /// about it again.
    bool m_readAgain = false;
    bool m_isReading = false;
    Activity m_activity = Activity::Idle;
    /// What had the focus, in each window, before it was disabled.
    std::vector<QPointer<QWidget>> m_focusBefore;
    bool m_isIdle = true;
    bool m_appeared = false;
    bool m_closing = false;
};

} // namespace kavelo
