#include "MainWindowViewController.h"

#include "AdditionalDataTransfer.h"
#include "Alert.h"
#include "FactorySettings.h"
#include "Log.h"
#include "MainWindowLayout.h"
#include "Protocol.h"
#include "ScreenText.h"
#include "ui_MainWindowViewController.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <algorithm>
#include <cstdlib>

// The part of the main window that exchanges data with the unit: the main loop, reading, writing
// and the restore.

namespace kavelo {
namespace {

const auto RestoreQuestion =
    QStringLiteral("Settings of this Kavelo will be restored to the initial settings at factory "
                   "shipment. Is it OK with you? \r\n"
                   "Click [OK] to make the Kavelo return to the initial state. \r\n"
                   "Click [Cancel] to do nothing.");

/// Greatest number of silent reads in a row because of unexpected reports. Without this limit a
/// unit that sends too many reports would be read forever.
constexpr int MaxSilentLooks = 3;

} // namespace

/// One read, write or restore. Its waits run the event loop, so another run may begin inside them
/// and change the data that this run has stored.
class MainWindowViewController::Run
{
public:
    explicit Run(MainWindowViewController &window)
        : m_window(window)
        , m_number(++window.m_runs)
    {
        UnexpectedReply = false;
    }

    /// Whether another run has begun since this one.
    [[nodiscard]] bool isOvertaken() const { return m_window.m_runs != m_number; }
    /// Whether this run must neither read nor write any further: another run may have changed the
    /// setting arrays, or another unit may have been plugged in.
    [[nodiscard]] bool mustStop() const { return isOvertaken() || DeviceDetectedChanged; }

    /// Records that an exchange of this run has failed.
    void noteFailure() { m_hasFailed = true; }
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

private:
    const MainWindowViewController &m_window;
    const int m_number;
    bool m_hasFailed = false;
};

// The main loop

void MainWindowViewController::UpdateAppWindow()
{
    enableCommands();
    const Task task = nextTask();
    if (task == Task::Nothing) {
        return;
    }
    // A timer does not fire while its own slot runs, unless it has been started again. With this
    // start the ticks continue inside the waits below.
    m_timer.start();
    switch (task) {
    case Task::Nothing:
        break;
    case Task::ReadAnew:
        DeviceDetectedChanged = false;
        // An open question refers to the previous unit.
        dismissQuestions(this);
        takeUnit();
        m_silentLooks = 0;
        readUnit(MESSAGE_ON);
        break;
    case Task::Restore:
        restoreInitialSettings();
        break;
    case Task::LookAgain:
        ++m_silentLooks;
        readUnit(MESSAGE_OFF);
        break;
    }
}

MainWindowViewController::Task MainWindowViewController::nextTask() const
{
    if (DeviceDetectedChanged) {
        return Task::ReadAnew;
    }
    if (m_isReading || m_activity != Activity::Idle) {
        return Task::Nothing; // tried again when the running task has ended
    }
    if (InitialState) {
        return Task::Restore;
    }
    const bool looksAgain = m_readAgain || (UnexpectedReply && m_silentLooks < MaxSilentLooks);
    return looksAgain ? Task::LookAgain : Task::Nothing;
}

/// Clears the data of the previous unit. A restore sends the unused bytes of a record back as they
/// were read, so they must come from the same unit.
void MainWindowViewController::takeUnit()
{
    if (m_unit == plugNPlay.myDevice()) {
        return;
    }
    m_unit = plugNPlay.myDevice();
    NumberOfPedals = 0;
    OutputMode = {};
    CommonData = {};
    AdditionalData = {};
}

/// Decides what follows a run. When another run has begun since, the unit is read anew. When the
/// run failed, the unit is read once more without messages, unless the run was already such a
/// silent read.
void MainWindowViewController::endRun(const Run &run, bool isSilentLook)
{
    if (run.isOvertaken()) {
        DeviceDetectedChanged = true;
    } else if (run.hasFailed() && !isSilentLook) {
        m_readAgain = true;
    }
}

// Reading

/// Reads the whole unit. Without `MessageOn` this is a silent read, and it is not repeated when it
/// fails.
void MainWindowViewController::readUnit(bool MessageOn)
{
    const QScopedValueRollback<bool> reading(m_isReading, true);
    Run run(*this);
    m_readAgain = false;
    const QPointer<QWidget> focus = focusWidget();
    InitializeControls();
    if (DeviceDetected) {
        m_ui->labelMainWindowExplanation->setText(toScreenText(SettingsExplanation));
        const bool isRead = readVersion(MessageOn, run) && readNumberOfPedals(MessageOn, run) &&
                            readPedals(MessageOn, run);
        if (!isRead && !run.mustStop()) {
            InitializeControls();
        }
        restoreFocus(focus);
    }
    endRun(run, !MessageOn);
}

/// Returns false when the read must stop. An unsupported version is read a second time, because the
/// first reply may have been a late reply to another request.
bool MainWindowViewController::readVersion(bool MessageOn, Run &run)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (plugNPlay.Communicate(GET_VERSION_NUMBER, MessageOn)) {
            run.noteFailure();
            return false;
        }
        VersionNumberMajor = InputPacketBuffer[2];
        VersionNumberMinor = InputPacketBuffer[3];
        VersionNumberRevision = InputPacketBuffer[4];
        if (run.mustStop()) {
            return false;
        }
        if (VersionNumberMajor < FirstUnsupportedMajor) {
            return true;
        }
    }
    alertBox(QStringLiteral("This version is not supported"));
    std::exit(0); // NOLINT(concurrency-mt-unsafe)
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readNumberOfPedals(bool MessageOn, Run &run)
{
    if (plugNPlay.Communicate(GET_NUMBER_OF_PEDALS, MessageOn)) {
        run.noteFailure();
        return false;
    }
    if (run.mustStop()) {
        return false;
    }
    NumberOfPedals = InputPacketBuffer[2];
    if (NumberOfPedals > MaxPedals) {
        NumberOfPedals = 0;
        InitializeControls();
        alertBox(QStringLiteral("This number of pedals is not supported"));
        return false;
    }
    return true;
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readPedals(bool MessageOn, Run &run)
{
    applyLayout(pedalLayout(NumberOfPedals));
    for (int pedal = 0; pedal < NumberOfPedals; ++pedal) {
        if (!readPedal(pedal, MessageOn, run)) {
            return false;
        }
    }
    return true;
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readPedal(int pedal, bool MessageOn, Run &run)
{
    const auto row = static_cast<std::size_t>(pedal);
    SelectedPedalNo = pedal;
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(pedal);
    const bool failed = plugNPlay.Communicate(GET_OUTPUT_MODE_AND_DATA, MessageOn);
    if (run.mustStop()) {
        return false;
    }
    // After a failed exchange the buffer still holds another reply, and the row gets its bytes.
    // Reading continues with the next pedal, so that the window does not stay empty.
    OutputMode.at(row) = InputPacketBuffer[2];
    std::copy_n(InputPacketBuffer.begin() + 3, NUMBER_OF_COMMON_DATA, CommonData.at(row).begin());
    bool isBroken = false;
    if (!failed && OutputMode.at(row) == PLURAL_SIMULTANEOUS_KEY_OUTPUT) {
        isBroken = readAdditionalData(plugNPlay, pedal, MessageOn);
    }
    if (failed || isBroken) {
        run.noteFailure();
    }
    if (isBroken || run.mustStop()) {
        return false;
    }
    SelectedPedalNo = pedal; // the user may have opened the dialog of another pedal
    WritePedalContents();
    enableRow(row);
    return true;
}

// Writing

void MainWindowViewController::SettingDialog_OK()
{
    if (!SettingEnabled || isBusy()) {
        return;
    }
    const QString pedalName = PedalName; // PedalName may change during the waits
    WritePedalContents();
    setActivity(Activity::Sending);
    const bool isWritten = sendSelectedPedal();
    setActivity(Activity::AwaitingUser);
    if (isWritten) {
        alertBox(
            QStringLiteral("The settings of the %1 have finished successfully.").arg(pedalName));
    }
    setActivity(Activity::Idle);
}

/// Returns whether the unit has accepted the record and the timing parameters.
bool MainWindowViewController::sendSelectedPedal()
{
    m_silentLooks = 0;
    Run run(*this);
    bool isSent = false;
    // Another unit, or a new read, may have fewer pedals.
    if (!run.mustStop() && SelectedPedalNo < NumberOfPedals) {
        fillSetOutputModeAndData(SelectedPedalNo);
        isSent = !plugNPlay.Communicate(SET_OUTPUT_MODE_AND_DATA, MESSAGE_ON);
    }
    if (isSent) {
        fillSetParameters();
        isSent = !plugNPlay.Communicate(SET_PARAMETERS, MESSAGE_ON);
    }
    if (!isSent) {
        InitializeControls();
        run.noteFailure();
    }
    endRun(run);
    return isSent;
}

// Restore

void MainWindowViewController::restoreInitialSettings()
{
    InitialState = false;
    setActivity(Activity::AwaitingUser);
    if (isRestoreWanted()) {
        logLine(QStringLiteral("The selected Kavelo is returning to the initial state in time of "
                               "factory shipment."));
        setActivity(Activity::Sending);
        const bool isRestored = sendFactorySettings();
        setActivity(Activity::AwaitingUser);
        tellOutcomeOfRestore(isRestored);
    }
    setActivity(Activity::Idle);
}

bool MainWindowViewController::isRestoreWanted()
{
    const Answer answer = askQuestion(RestoreQuestion, this);
    if (answer == Answer::Cancel) {
        logLine(QStringLiteral("Canceled"));
    }
    return answer == Answer::Ok;
}

/// Returns whether the unit has accepted the timing parameters, the last request of a restore.
bool MainWindowViewController::sendFactorySettings()
{
    m_silentLooks = 0;
    Run run(*this);
    const int pedals = NumberOfPedals;
    // The user has agreed to restore this unit only, so the loop stops when another one arrives.
    for (int pedal = 0; pedal < pedals && !run.mustStop(); ++pedal) {
        SelectedPedalNo = pedal;
        applyFactorySetting(pedal);
        WritePedalContents();
        fillSetOutputModeAndData(pedal);
        if (plugNPlay.Communicate(SET_OUTPUT_MODE_AND_DATA, MESSAGE_ON)) {
            InitializeControls();
            run.noteFailure();
        }
    }
    bool isClosed = false;
    if (!run.mustStop()) {
        fillSetParameters();
        isClosed = !plugNPlay.Communicate(SET_PARAMETERS, MESSAGE_ON);
    }
    if (!isClosed) {
        InitializeControls();
        run.noteFailure();
    }
    endRun(run);
    return isClosed;
}

void MainWindowViewController::tellOutcomeOfRestore(bool isRestored) const
{
    if (m_closing) {
        return;
    }
    alertBox(
        isRestored
            ? QStringLiteral(
                  "The settings for this Kavelo have been restored to the initial settings.")
            : QStringLiteral("An error has occurred.\r\nThe settings for this Kavelo could not "
                             "be restored to the initial settings."));
}

} // namespace kavelo
