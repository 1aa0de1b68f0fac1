#pragma once

#include <QMainWindow>

#include <memory>

namespace kavelo {

class SimulatedUnit;

namespace Ui {
class SimulatorPanel;
}

/// The window beside the utility that plugs a simulated unit in and out, sets it up, makes it fail
/// and lists its exchanges. Closing the utility ends the program even while this window is open.
class SimulatorPanel : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SimulatorPanel)

public:
    /// The unit must outlive the panel.
    explicit SimulatorPanel(SimulatedUnit &unit, QWidget *parent = nullptr);
    ~SimulatorPanel() override;

Q_SIGNALS:
    /// Asks for the Advanced dialog of a pedal (0 to 4), with a value for SettingEnabled.
    void advancedDialogRequested(int pedal, bool settingEnabled);

private:
    void showUnit();
    void connectControls();
    void showPlugged(bool pluggedIn);
    void plug(bool in);
    void replug();
    void setVersion();
    void setFault();

    SimulatedUnit &m_unit;
    std::unique_ptr<Ui::SimulatorPanel> m_ui;
};

} // namespace kavelo
