#include "HID_PnP.h"

#include "AlertBox.h"
#include "Log.h"
#include "RunLoop.h"

#include <QScopedValueRollback>

#include <utility>

namespace kavelo {

HID_PnP::HID_PnP(QObject *parent)
    : QObject(parent)
    , m_hidManager(hid::createManager())
{
    connect(&m_poll, &QTimer::timeout, this, &HID_PnP::check_INPUT);
    m_hidManager->setDeviceMatching(KaveloMatching);
    m_hidManager->open();
    NewDeviceDetected();
    selfRef = this;
}

HID_PnP::~HID_PnP()
{
    close();
    if (selfRef == this) {
        selfRef = nullptr;
    }
}

void HID_PnP::NewDeviceDetected()
{
    const std::vector<hid::DeviceRef> devices = m_hidManager->copyDevices();
    if (devices.empty()) {
        DeviceRemoved();
        return;
    }
    m_myDevice = devices.front();
    abandonExchange(); // its unit has gone: its timeout must not delay reading the new unit
    isConnected = true;
    m_myDevice->registerInputReportCallback(InputPacketBuffer, &MyInputCallback, this);
    m_hidManager->registerDeviceRemovalCallback(&MyRemovalCallback, this);
    m_hidManager->registerDeviceMatchingCallback(nullptr, nullptr);
    DeviceDetected = true;
    DeviceDetectedChanged = true;
    Q_EMIT unitChanged();
}

void HID_PnP::DeviceRemoved()
{
    letUnitGo();
    isConnected = false;
    m_hidManager->registerDeviceRemovalCallback(nullptr, nullptr);
    m_hidManager->registerDeviceMatchingCallback(&MyNewDeviceCallback, this);
    DeviceDetected = false;
    DeviceDetectedChanged = true;
    if (StandardSettingDialogOpen) {
        CloseStandardSetting = true;
    }
    Q_EMIT unitChanged();
}

bool HID_PnP::Communicate(std::uint8_t CommunicationCommand, bool MessageOn)
{
    hid::Report request = OutputPacketBuffer; // the waits may let other senders fill the buffer
    request[0] = CommunicationCommand;
    if (!waitForTurn()) {
        return true;
    }
    if (!send(request)) {
        if (MessageOn) {
            alertBox(QStringLiteral("sending error"));
        }
        return true;
    }
    Exchange exchange{m_myDevice};
    waitForReply(exchange);
    if (exchange.outcome == Exchange::Outcome::TimedOut) {
        if (MessageOn) {
            alertBox(QStringLiteral("timeout"));
        }
        logLine(QStringLiteral("timeout"));
    }
    if (exchange.outcome != Exchange::Outcome::Answered) {
        return true;
    }
    InputPacketBuffer = exchange.reply; // later reports may have overwritten it
    return false;
}

void HID_PnP::Communicate_AdditionalData()
{
    if (!waitForTurn()) {
        return;
    }
    hid::Report request;
    request.fill(0xFF);
    request[0] = GET_ADDITIONAL_DATA;
    request[1] = static_cast<std::uint8_t>(SelectedPedalNo);
    request[2] = static_cast<std::uint8_t>(DataNo);
    Flag_send = true;
    if (send(request)) {
        m_replyOwed.setRemainingTime(ReplyTimeout);
    }
}

/// Waits until no other exchange runs and no late reply is due. Returns whether the unit that was
/// held at the call is still held.
bool HID_PnP::waitForTurn()
{
    const hid::DeviceRef unit = m_myDevice;
    while (unit && m_myDevice == unit && (m_running != nullptr || isReplyOwed())) {
        runEventLoop(TickPeriod);
    }
    return unit && m_myDevice == unit;
}

bool HID_PnP::send(const hid::Report &request)
{
    OutputPacketBuffer = request;
    if (!m_myDevice->setReport(OutputPacketBuffer)) {
        return false;
    }
    // A report that arrived before the request is not the reply. The reply itself can only arrive
    // when the event loop runs.
    Flag_input = false;
    return true;
}

void HID_PnP::waitForReply(Exchange &exchange)
{
    m_running = &exchange;
    Flag_timeout = false;
    Flag_send = true;
    m_poll.start(TickPeriod);
    while (exchange.outcome == Exchange::Outcome::Waiting) {
        runEventLoop(WaitSlice);
    }
}

void HID_PnP::check_INPUT()
{
    if (m_running == nullptr) {
        return;
    }
    if (Flag_input) {
        end(Exchange::Outcome::Answered);
    } else if (++Count_timeout >= TimeoutTicks) {
        Flag_timeout = true;
        if (m_running->unit == m_myDevice) {
            m_replyOwed.setRemainingTime(ReplyLateness);
        }
        end(Exchange::Outcome::TimedOut);
    }
}

void HID_PnP::end(Exchange::Outcome outcome)
{
    m_poll.stop();
    Flag_send = false;
    Flag_input = false;
    Count_timeout = 0;
    std::exchange(m_running, nullptr)->outcome = outcome;
}

void HID_PnP::PacketReceived()
{
    if (m_running != nullptr && !Flag_input) {
        m_running->reply = InputPacketBuffer;
        m_poll.start(std::chrono::milliseconds::zero()); // the next tick is due now
    } else if (isReplyOwed()) {
        m_replyOwed = {};
    } else {
        UnexpectedReply = true;
    }
    Flag_input = true;
}

void HID_PnP::close()
{
    m_hidManager->registerDeviceMatchingCallback(nullptr, nullptr);
    m_hidManager->registerDeviceRemovalCallback(nullptr, nullptr);
    letUnitGo();
    abandonExchange();
}

void HID_PnP::letUnitGo()
{
    if (m_myDevice) {
        m_myDevice->registerInputReportCallback(InputPacketBuffer, nullptr, nullptr);
    }
    m_myDevice.reset();
    m_replyOwed = {};
}

void HID_PnP::abandonExchange()
{
    if (m_running) {
        end(Exchange::Outcome::Abandoned);
    }
}

void MyNewDeviceCallback(void * /*context*/, const hid::DeviceRef & /*device*/)
{
    if (selfRef == nullptr || flag_MyNewDeviceCallback || selfRef->myDevice()) {
        return;
    }
    const QScopedValueRollback guard(flag_MyNewDeviceCallback, true);
    selfRef->NewDeviceDetected();
}

void MyRemovalCallback(void * /*context*/, const hid::DeviceRef &device)
{
    if (selfRef == nullptr || flag_MyRemovalCallback || device != selfRef->myDevice()) {
        return;
    }
    const QScopedValueRollback guard(flag_MyRemovalCallback, true);
    selfRef->DeviceRemoved();
}

void MyInputCallback(void * /*context*/, std::span<const std::uint8_t> /*report*/)
{
    if (selfRef != nullptr) {
        selfRef->PacketReceived();
    }
}

} // namespace kavelo
