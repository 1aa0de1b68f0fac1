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

#include <algorithm>
#include <cstdlib>
#include <utility>

// The main window's dealings with the unit: its main loop, and what that reads and sends.

namespace kavelo {
namespace {

const auto RestoreQuestion =
    QStringLiteral("Settings of this Kavelo will be restored to the initial settings at factory "
                   "shipment. Is it OK with you? \r\n"
                   "Click [OK] to make the Kavelo return to the initial state. \r\n"
                   "Click [Cancel] to do nothing.");

} // namespace

/// One piece of work that talks to the unit at length. Its waits may let another one in, which has
/// then changed what this one has done so far; the unit is read afresh after that.
class MainWindowViewController::Run
{
public:
    /// `looksAgain`: when it fails, look what the unit really holds once it is over.
    explicit Run(MainWindowViewController &window, bool looksAgain = true)
        : m_window(window)
        , m_number(++window.m_runs)
        , m_looksAgain(looksAgain)
    {
        m_window.m_mayDoubt = false;
        UnexpectedReply = false;
    }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;
    ~Run()
    {
        if (isOvertaken()) {
            DeviceDetectedChanged = true;
        } else if (m_hasFailed && m_looksAgain) {
            m_window.m_readAgain = true;
        }
    }

    /// Whether the arrays may hold something else by now than this run has put there, or another
    /// unit may stand where the one was. Nothing may be read or written any more then.
    [[nodiscard]] bool isOver() const { return isOvertaken() || DeviceDetectedChanged; }

    /// The unit has not taken or given something.
    void noteFailure() { m_hasFailed = true; }

private:
    [[nodiscard]] bool isOvertaken() const { return m_window.m_runs != m_number; }

    MainWindowViewController &m_window;
    const int m_number;
    const bool m_looksAgain;
    bool m_hasFailed = false;
};

/// While it lives, settings are being sent: the Standard buttons and the restore item do nothing.
class MainWindowViewController::Sending
{
public:
    explicit Sending(MainWindowViewController &window)
        : m_window(window)
        , m_focus(window.focusWidget())
    {
        set(true);
    }
    Sending(const Sending &) = delete;
    Sending &operator=(const Sending &) = delete;
    ~Sending()
    {
        set(false);
        if (m_focus && m_focus->isEnabled()) {
            m_focus->setFocus(); // greying it has moved the focus on
        }
    }

private:
    void set(bool isSending)
    {
        m_window.m_isSending = isSending;
        m_window.enableCommands();
    }

    MainWindowViewController &m_window;
    const QPointer<QWidget> m_focus;
};

// Reading

void MainWindowViewController::UpdateAppWindow()
{
    enableCommands();
    if (UnexpectedReply && std::exchange(m_mayDoubt, false)) {
        m_readAgain = true;
    }
    // Nothing but a change of units gets between the requests of a write or a restore.
    InitialState = InitialState && !m_isSending;
    const bool looksAgain = m_readAgain && !m_isSending && !plugNPlay.isReplyOwed();
    if (!DeviceDetectedChanged && !InitialState && !looksAgain) {
        return;
    }
    // A timer does not fire again while its slot runs, but a fresh one does: this way the ticks go
    // on inside the waits of what follows.
    m_timer.start();
    if (DeviceDetectedChanged) {
        DeviceDetectedChanged = false;
        m_readAgain = false;
        NumberOfPedals = 0; // until the unit has told it
        // A question about the unit that was there is no question about the next one.
        dismissQuestions(this);
        readUnit(MESSAGE_ON);
    } else if (InitialState) {
        restoreInitialSettings();
    } else {
        m_readAgain = false;
        readUnit(MESSAGE_OFF);
    }
}

/// Reads all of the unit. Without `MessageOn` it is the second look after something has failed:
/// what fails again stays as it is.
void MainWindowViewController::readUnit(bool MessageOn)
{
    Run run(*this, MessageOn);
    InitializeControls();
    if (!DeviceDetected) {
        return;
    }
    m_ui->labelMainWindowExplanation->setText(toScreenText(SettingsExplanation));
    const bool isRead = readVersion(MessageOn, run) && readNumberOfPedals(MessageOn, run) &&
                        readPedals(MessageOn, run);
    if (run.isOver()) {
        return;
    }
    if (!isRead) {
        InitializeControls();
    }
    m_mayDoubt = isRead && MessageOn;
}

bool MainWindowViewController::readVersion(bool MessageOn, Run &run)
{
    if (plugNPlay.Communicate(GET_VERSION_NUMBER, MessageOn)) {
        run.noteFailure();
        return false;
    }
    VersionNumberMajor = InputPacketBuffer[2];
    VersionNumberMinor = InputPacketBuffer[3];
    VersionNumberRevision = InputPacketBuffer[4];
    if (VersionNumberMajor >= FirstUnsupportedMajor) {
        alertBox(QStringLiteral("This version is not supported"));
        std::exit(0); // NOLINT(concurrency-mt-unsafe)
    }
    return !run.isOver();
}

bool MainWindowViewController::readNumberOfPedals(bool MessageOn, Run &run)
{
    if (plugNPlay.Communicate(GET_NUMBER_OF_PEDALS, MessageOn)) {
        run.noteFailure();
        return false;
    }
    if (run.isOver()) {
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
    if (run.isOver()) {
        return false;
    }
    // After a failure these are what the buffer happens to hold; the other pedals are worth more
    // than a window that stays blank.
    OutputMode.at(row) = InputPacketBuffer[2];
    std::copy_n(InputPacketBuffer.begin() + 3, NUMBER_OF_COMMON_DATA, CommonData.at(row).begin());
    const bool isSequence = !failed && OutputMode.at(row) == PLURAL_SIMULTANEOUS_KEY_OUTPUT;
    const bool isBroken = isSequence && readAdditionalData(plugNPlay, pedal, MessageOn);
    if (failed || isBroken) {
        run.noteFailure();
    }
    if (isBroken || run.isOver()) {
        return false;
    }
    SelectedPedalNo = pedal; // the user may have opened another pedal's dialog meanwhile
    WritePedalContents();
    enableRow(row);
    return true;
}

// Writing

void MainWindowViewController::SettingDialog_OK()
{
    if (!SettingEnabled || m_isSending) {
        return;
    }
    const QString pedalName = PedalName; // another pedal may be selected meanwhile
    WritePedalContents();
    if (sendSelectedPedal()) {
        alertBox(
            QStringLiteral("The settings of the %1 have finished successfully.").arg(pedalName));
    }
}

bool MainWindowViewController::sendSelectedPedal()
{
    const Sending sending(*this);
    Run run(*this);
    fillSetOutputModeAndData(SelectedPedalNo);
    // The Advanced dialog stays open when its unit goes; the next one may have fewer pedals.
    const bool isGone = run.isOver() || SelectedPedalNo >= NumberOfPedals;
    bool failed = isGone || plugNPlay.Communicate(SET_OUTPUT_MODE_AND_DATA, MESSAGE_ON);
    if (!failed) {
        fillSetParameters();
        failed = plugNPlay.Communicate(SET_PARAMETERS, MESSAGE_ON);
    }
    if (failed) {
        InitializeControls();
        run.noteFailure();
    }
    return !failed;
}

// Restore

void MainWindowViewController::restoreInitialSettings()
{
    InitialState = false;
    if (!isRestoreWanted()) {
        return;
    }
    logLine(QStringLiteral("The selected Kavelo is returning to the initial state in time of "
                           "factory shipment."));
    const bool restored = sendFactorySettings();
    if (m_closing) {
        return;
    }
    alertBox(
        restored
            ? QStringLiteral(
                  "The settings for this Kavelo have been restored to the initial settings.")
            : QStringLiteral("An error has occurred.\r\nThe settings for this Kavelo could not "
                             "be restored to the initial settings."));
}

bool MainWindowViewController::isRestoreWanted()
{
    const Sending sending(*this); // it is about to
    const Answer answer = askQuestion(RestoreQuestion, this);
    if (answer == Answer::Cancel) {
        logLine(QStringLiteral("Canceled"));
    }
    return answer == Answer::Ok;
}

/// Returns whether the unit has taken the timing parameters, which close a restore.
bool MainWindowViewController::sendFactorySettings()
{
    const Sending sending(*this);
    Run run(*this);
    const int pedals = NumberOfPedals;
    // The user has agreed to restore this unit, not one that comes in its place.
    for (int pedal = 0; pedal < pedals && !run.isOver(); ++pedal) {
        SelectedPedalNo = pedal;
        applyFactorySetting(pedal);
        WritePedalContents();
        fillSetOutputModeAndData(pedal);
        if (plugNPlay.Communicate(SET_OUTPUT_MODE_AND_DATA, MESSAGE_ON)) {
            InitializeControls();
            run.noteFailure();
        }
    }
    fillSetParameters();
    const bool failed = run.isOver() || plugNPlay.Communicate(SET_PARAMETERS, MESSAGE_ON);
    if (failed) {
        InitializeControls();
        run.noteFailure();
    }
    return !failed;
}

} // namespace kavelo
