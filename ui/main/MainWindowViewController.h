#pragma once

#include "DialogPresenter.h"
#include "HID_PnP.h"
#include "MenuItems.h"
#include "PedalRows.h"
#include "PressGuard.h"

#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

namespace kavelo {

namespace Ui {
class MainWindowViewController;
}

struct MainWindowLayout;
class UnitRun;

/// A restore of the factory settings has been requested. Set by the menu, cleared by the main
/// window before it asks the user to confirm.
inline bool InitialState = false;

/// The main window. It shows the setting of every pedal and follows the unit.
///
/// The main loop of the program is UpdateAppWindow(), called by a timer every 0.1 s. One call (a
/// tick) may wait for the unit, and further ticks run inside that wait. When the unit changes
/// meanwhile, such a nested tick reads the next unit, and the outer one stops what it was doing.
class MainWindowViewController : public QMainWindow, private DialogPresenter
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MainWindowViewController)

public:
    explicit MainWindowViewController(QWidget *parent = nullptr);
    ~MainWindowViewController() override;

    /// The only device link of the program.
    HID_PnP plugNPlay{this};

    [[nodiscard]] MenuItems menuItems() const;

    /// One tick of the main loop.
    void UpdateAppWindow();
    /// Shows the window without a unit: no pedal settings, the explanation how to connect a unit,
    /// the narrow width.
    void InitializeControls();
    /// Shows the setting of pedal `SelectedPedalNo` in its text box.
    void WritePedalContents();
    void SettingDialog_OK() override;
    /// Widens the window to 696 pixels, animated. Given: no control calls it.
    void testchangewidth();

    void buttonSetPedal0Standard_Clicked() { openStandardDialog(0); }
    void buttonSetPedal1Standard_Clicked() { openStandardDialog(1); }
    void buttonSetPedal2Standard_Clicked() { openStandardDialog(2); }
    void buttonSetPedal3Standard_Clicked() { openStandardDialog(3); }
    void buttonSetPedal4Standard_Clicked() { openStandardDialog(4); }

    /// Opens the Advanced dialog for the pedal given by `SelectedPedalNo` and `PedalName`, under
    /// the same conditions as a Standard button opens its dialog. The dialog sends a setting only
    /// while `SettingEnabled` is true.
    void SetPedal2Advanced_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// What the setting arrays hold of the unit `m_unit`. Incomplete: all pedals are shown, but an
    /// exchange failed, so a row may have the bytes of another reply.
    enum class Knowledge { Nothing, Incomplete, Complete };
    /// What the window is doing. AwaitingUser: a message box of a write or a restore is open.
    enum class Activity { Idle, Reading, Sending, AwaitingUser };
    /// What a tick has to do. ReadAnew reads the unit after a change and shows failures; LookAgain
    /// reads it silently.
    enum class Task { Nothing, ReadAnew, LookAgain, Write, Restore };

    void viewDidLoad();
    void viewDidAppear();

    void setWindowWidth(int width);
    void stackControls();
    void applyLayout(const MainWindowLayout &layout);
    void restoreFocus(QWidget *before);

    /// Whether a write or a restore runs.
    [[nodiscard]] bool isTaskRunning() const
    {
        return m_activity == Activity::Sending || m_activity == Activity::AwaitingUser;
    }
    [[nodiscard]] bool isBusy() const;
    void enableCommands();
    void setActivity(Activity activity);
    [[nodiscard]] QList<PedalSettingDialog *> dialogs() const;
    [[nodiscard]] QWidgetList windows();

    [[nodiscard]] Task nextTask() const;
    [[nodiscard]] bool isLookDue() const;
    [[nodiscard]] bool isUnitKnown() const;
    void takeUnit();
    void enter(const UnitRun &run, Activity activity);
    void tell(const UnitRun &run, const QString &message);

    void readAlone(bool MessageOn);
    void readUnit(UnitRun &run);
    [[nodiscard]] bool readVersion(UnitRun &run);
    [[nodiscard]] bool readNumberOfPedals(UnitRun &run);
    [[nodiscard]] bool readPedals(UnitRun &run);
    [[nodiscard]] bool readPedal(int pedal, UnitRun &run);

    [[nodiscard]] HID_PnP &link() override { return plugNPlay; }
    void requestWrite(PedalSettingDialog &dialog) override;
    void carryOutWrite();
    void restoreInitialSettings();
    [[nodiscard]] bool isRestoreWanted();
    [[nodiscard]] bool sendFactorySettings(UnitRun &run);
    [[nodiscard]] bool finish(UnitRun &run, bool goesOn);

    [[nodiscard]] PedalSettingDialog *openDialog() const;
    [[nodiscard]] bool canOpenDialog(int pedal) const;
    void openStandardDialog(int pedal);

    std::unique_ptr<Ui::MainWindowViewController> m_ui;
    PedalRows m_rows;
    PressGuard m_pressGuard;
    QTimer m_timer{this};

    /// The unit to which the setting arrays and the number of pedals belong; null when there is
    /// none.
    hid::DeviceRef m_unit;
    Knowledge m_knowledge = Knowledge::Nothing;
    Activity m_activity = Activity::Idle;
    /// A read with messages, a write or a restore has failed. The unit is looked at once more, to
    /// show the settings that it holds.
    bool m_isLookDue = false;
    /// Number of silent looks since the last read with messages, write or restore.
    int m_looks = 0;
    /// The dialog whose setting waits to be sent, or null.
    QPointer<PedalSettingDialog> m_writer;
    /// The widget of each window that had the focus before the window was disabled; empty while
    /// none is.
    std::vector<QPointer<QWidget>> m_focusBefore;
    bool m_appeared = false;
    bool m_closing = false;
};

} // namespace kavelo
