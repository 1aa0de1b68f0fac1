#include "MainWindowViewController.h"

#include "AdditionalDataTransfer.h"
#include "Alert.h"
#include "FactorySettings.h"
#include "Log.h"
#include "MainWindowLayout.h"
#include "PedalSettingDialog.h"
#include "Protocol.h"
#include "RunLoop.h"
#include "ScreenText.h"
#include "UnitRun.h"
#include "ui_MainWindowViewController.h"

#include <QPointer>

#include <algorithm>
#include <cstdlib>
#include <utility>

// The part of the main window that exchanges data with the unit: the main loop, reading, writing
// and the restore.

namespace kavelo {
namespace {

const auto RestoreQuestion =
    QStringLiteral("Settings of this Kavelo will be restored to the initial settings at factory "
                   "shipment. Is it OK with you? \r\n"
                   "Click [OK] to make the Kavelo return to the initial state. \r\n"
                   "Click [Cancel] to do nothing.");

/// Greatest number of silent looks in a row because of unexpected reports. Without this limit a
/// unit that sends too many reports would be read forever.
constexpr int MaxLooks = 3;

} // namespace

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
        dismissQuestions(this); // an open question refers to the previous unit
        takeUnit();
        readAlone(MESSAGE_ON);
        break;
    case Task::LookAgain:
        ++m_looks;
        readAlone(MESSAGE_OFF);
        break;
    case Task::Write:
        carryOutWrite();
        break;
    case Task::Restore:
        restoreInitialSettings();
        break;
    }
    if (m_timer.isActive()) {
        // The next task waits for a whole period. A reply that comes twice or late has arrived by
        // then, and the unit is looked at first.
        m_timer.start();
    }
}

/// The order in which tasks that wait are done. docs/architecture.md has the table of the states.
MainWindowViewController::Task MainWindowViewController::nextTask() const
{
    if (DeviceDetectedChanged) {
        return Task::ReadAnew;
    }
    if (m_activity != Activity::Idle) {
        return Task::Nothing; // asked again when the running task has ended
    }
    if (isLookDue()) {
        return Task::LookAgain;
    }
    if (m_writer) {
        return Task::Write;
    }
    return InitialState ? Task::Restore : Task::Nothing;
}

bool MainWindowViewController::isLookDue() const
{
    return m_isLookDue || (UnexpectedReply && m_looks < MaxLooks);
}

/// Whether the setting arrays hold what the unit holds, as far as can be told, and no task runs.
bool MainWindowViewController::isUnitKnown() const
{
    return m_knowledge != Knowledge::Nothing && m_activity == Activity::Idle &&
           !DeviceDetectedChanged && !isLookDue();
}

/// Turns to the unit that is held now. The data of the previous unit is cleared: a record's unused
/// bytes are sent back as they were read, so they must come from the same unit.
void MainWindowViewController::takeUnit()
{
    m_looks = 0;
    if (m_unit == plugNPlay.myDevice()) {
        return;
    }
    m_unit = plugNPlay.myDevice();
    NumberOfPedals = 0;
    OutputMode = {};
    CommonData = {};
    AdditionalData = {};
}

/// Says what the window is doing, unless it has turned to another unit than the run's.
void MainWindowViewController::enter(const UnitRun &run, Activity activity)
{
    if (!run.isOvertaken()) {
        setActivity(activity);
    }
}

/// Shows a message box about a write or a restore and waits until it is closed.
void MainWindowViewController::tell(const UnitRun &run, const QString &message)
{
    enter(run, Activity::AwaitingUser);
    alertBox(message);
}

// Reading

/// A read that is a task of its own, not a part of a restore.
void MainWindowViewController::readAlone(bool MessageOn)
{
    UnitRun run(plugNPlay, m_unit, MessageOn);
    enter(run, Activity::Reading);
    readUnit(run);
    enter(run, Activity::Idle);
}

/// Reads the whole unit.
void MainWindowViewController::readUnit(UnitRun &run)
{
    m_knowledge = Knowledge::Nothing;
    m_isLookDue = false;
    UnexpectedReply = false;
    const QPointer<QWidget> focus = focusWidget();
    InitializeControls();
    if (!DeviceDetected) {
        return;
    }
    m_ui->labelMainWindowExplanation->setText(toScreenText(SettingsExplanation));
    const bool isRead = readVersion(run) && readNumberOfPedals(run) && readPedals(run);
    if (run.isOvertaken()) {
        return;
    }
    m_isLookDue = run.MessageOn() && run.hasFailed();
    if (isRead) {
        m_knowledge = run.hasFailed() ? Knowledge::Incomplete : Knowledge::Complete;
    } else if (!run.mustStop()) {
        InitializeControls();
    }
    restoreFocus(focus);
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readVersion(UnitRun &run)
{
    if (!run.ask(GET_VERSION_NUMBER, FirstUnsupportedMajor)) {
        return false;
    }
    VersionNumberMajor = InputPacketBuffer[2];
    VersionNumberMinor = InputPacketBuffer[3];
    VersionNumberRevision = InputPacketBuffer[4];
    if (VersionNumberMajor < FirstUnsupportedMajor) {
        return true;
    }
    if (run.MessageOn()) {
        alertBox(QStringLiteral("This version is not supported"));
        std::exit(0); // NOLINT(concurrency-mt-unsafe)
    }
    return false;
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readNumberOfPedals(UnitRun &run)
{
    NumberOfPedals = 0;
    if (!run.ask(GET_NUMBER_OF_PEDALS, MaxPedals + 1)) {
        return false;
    }
    if (InputPacketBuffer[2] <= MaxPedals) {
        NumberOfPedals = InputPacketBuffer[2];
        return true;
    }
    if (run.MessageOn()) {
        InitializeControls();
        alertBox(QStringLiteral("This number of pedals is not supported"));
    }
    return false;
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readPedals(UnitRun &run)
{
    applyLayout(pedalLayout(NumberOfPedals));
    for (int pedal = 0; pedal < NumberOfPedals; ++pedal) {
        if (!readPedal(pedal, run)) {
            return false;
        }
    }
    return true;
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readPedal(int pedal, UnitRun &run)
{
    const auto row = static_cast<std::size_t>(pedal);
    SelectedPedalNo = pedal;
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(pedal);
    const bool failed = run.exchange(GET_OUTPUT_MODE_AND_DATA);
    if (run.mustStop()) {
        return false;
    }
    // After a failed exchange the buffer still holds another reply, and the row gets its bytes.
    // Reading continues with the next pedal, so that the window does not stay empty.
    OutputMode.at(row) = InputPacketBuffer[2];
    std::copy_n(InputPacketBuffer.begin() + 3, NUMBER_OF_COMMON_DATA, CommonData.at(row).begin());
    if (!failed && OutputMode.at(row) == PLURAL_SIMULTANEOUS_KEY_OUTPUT &&
        readAdditionalData(plugNPlay, pedal, run.MessageOn())) {
        run.noteFailure();
        return false;
    }
    if (run.mustStop()) {
        return false;
    }
    SelectedPedalNo = pedal; // the user may have opened the dialog of another pedal
    WritePedalContents();
    m_rows.light(pedal);
    enableCommands();
    return true;
}

// Writing

void MainWindowViewController::SettingDialog_OK()
{
    if (!SettingEnabled || !isUnitKnown()) {
        return;
    }
    const QString pedalName = PedalName; // PedalName may change during the waits
    WritePedalContents();
    UnitRun run(plugNPlay, m_unit, MESSAGE_ON);
    enter(run, Activity::Sending);
    fillSetOutputModeAndData(SelectedPedalNo);
    if (finish(run, !run.exchange(SET_OUTPUT_MODE_AND_DATA))) {
        tell(run,
             QStringLiteral("The settings of the %1 have finished successfully.").arg(pedalName));
    }
    enter(run, Activity::Idle);
}

/// The end of a write and of a restore: the timing parameters go out, unless `goesOn` is false or
/// the unit has gone. Returns whether the unit has accepted them.
bool MainWindowViewController::finish(UnitRun &run, bool goesOn)
{
    bool isFinished = false;
    if (goesOn && !run.mustStop()) {
        fillSetParameters();
        isFinished = !run.exchange(SET_PARAMETERS);
    }
    if (!run.isOvertaken()) {
        m_looks = 0;
        m_isLookDue = run.hasFailed();
        if (!isFinished) {
            InitializeControls();
        }
    }
    return isFinished;
}

// Restore

void MainWindowViewController::restoreInitialSettings()
{
    InitialState = false;
    UnitRun run(plugNPlay, m_unit, MESSAGE_ON);
    enter(run, Activity::AwaitingUser);
    if (isRestoreWanted()) {
        logLine(QStringLiteral("The selected Kavelo is returning to the initial state in time of "
                               "factory shipment."));
        const bool isRestored = sendFactorySettings(run);
        if (!m_closing) {
            tell(run, isRestored ? QStringLiteral("The settings for this Kavelo have been restored "
                                                  "to the initial settings.")
                                 : QStringLiteral("An error has occurred.\r\nThe settings for this "
                                                  "Kavelo could not be restored to the initial "
                                                  "settings."));
        }
    }
    enter(run, Activity::Idle);
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
/// Nothing is sent when the number of pedals or a record could not be read, because the restore
/// sends the unused bytes of a record back as they were read.
bool MainWindowViewController::sendFactorySettings(UnitRun &run)
{
    enter(run, Activity::Sending);
    m_looks = 0;
    for (bool mustLook = m_knowledge != Knowledge::Complete || isLookDue();
         mustLook && !run.mustStop(); mustLook = isLookDue()) {
        ++m_looks;
        UnitRun look(plugNPlay, m_unit, MESSAGE_OFF);
        readUnit(look);
        runEventLoopFor(TickPeriod); // a reply that comes twice or late has arrived by then
    }
    if (run.mustStop() || m_knowledge != Knowledge::Complete) {
        return false;
    }
    for (int pedal = 0; pedal < NumberOfPedals && !run.mustStop(); ++pedal) {
        SelectedPedalNo = pedal;
        applyFactorySetting(pedal);
        WritePedalContents();
        fillSetOutputModeAndData(pedal);
        if (run.exchange(SET_OUTPUT_MODE_AND_DATA) && !run.isOvertaken()) {
            InitializeControls();
        }
    }
    return finish(run, true);
}

} // namespace kavelo
