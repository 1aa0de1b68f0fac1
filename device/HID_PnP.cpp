#include "HID_PnP.h"

#include "Alert.h"
#include "RunLoop.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace kavelo {
namespace {

/// How long a reply is waited for, and how much later than that it may still come in.
std::chrono::milliseconds replyTime()
{
    return TimeoutTicks * TickPeriod;
}

/// How long a one-way request sleeps between two looks at a running exchange.
constexpr std::chrono::milliseconds ShortSlice{10};

} // namespace

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
    isConnected = true;
    m_myDevice->registerInputReportCallback(InputPacketBuffer, &MyInputCallback, this);
    m_hidManager->registerDeviceRemovalCallback(&MyRemovalCallback, this);
    m_hidManager->registerDeviceMatchingCallback(nullptr, nullptr);
    DeviceDetected = true;
    DeviceDetectedChanged = true;
}

void HID_PnP::DeviceRemoved()
{
    if (m_myDevice) {
        m_myDevice->registerInputReportCallback(InputPacketBuffer, nullptr, nullptr);
    }
    m_myDevice.reset();
    m_replyOwed = QDeadlineTimer();
    m_repliesDoubtful = QDeadlineTimer();
    isConnected = false;
    m_hidManager->registerDeviceRemovalCallback(nullptr, nullptr);
    m_hidManager->registerDeviceMatchingCallback(&MyNewDeviceCallback, this);
    DeviceDetected = false;
    DeviceDetectedChanged = true;
    if (StandardSettingDialogOpen) {
        CloseStandardSetting = true;
    }
}

bool HID_PnP::Communicate(std::uint8_t CommunicationCommand, bool MessageOn)
{
    if (!m_myDevice) {
        return true;
    }
    hid::Report request = OutputPacketBuffer;
    request[0] = CommunicationCommand;

    // The event loop runs in here, so the unit may change and other senders may fill the buffer.
    // A record meant for one unit must never reach another.
    const hid::DeviceRef unit = m_myDevice;
    discardOwedReply();
    if (m_myDevice != unit) {
        return true;
    }
    OutputPacketBuffer = request;
    if (!sendRequest(2 * replyTime())) {
        if (MessageOn) {
            alertBox(QStringLiteral("sending error"));
        }
        return true;
    }
    const quint64 thisRequest = m_requestsSent;
    waitForEndOfExchange();

    if (m_closed || m_requestsSent != thisRequest) {
        return true;
    }
    if (Flag_timeout) {
        if (MessageOn) {
            alertBox(QStringLiteral("timeout"));
        }
        logLine(QStringLiteral("timeout"));
        return true;
    }
    m_repliesDoubtful.setRemainingTime(replyTime());
    return false;
}

/// Lets the reply to an earlier request come in before the next request goes out: a reply is told
/// by its arrival alone, so one that is late would otherwise be taken for the next one's, and so
/// would every reply after it.
void HID_PnP::discardOwedReply()
{
    while (!m_replyOwed.hasExpired()) {
        runEventLoop(std::min(WaitSlice, std::chrono::milliseconds(m_replyOwed.remainingTime())));
    }
    m_replyOwed = QDeadlineTimer();
}

bool HID_PnP::sendRequest(std::chrono::milliseconds replyOwedFor)
{
    if (!m_myDevice->setReport(OutputPacketBuffer)) {
        return false;
    }
    // A report that came in before the request is no answer to it; the answer itself can't come in
    // before the event loop runs.
    Flag_input = false;
    ++m_requestsSent;
    m_repliesOwed = m_replyOwed.hasExpired() ? 1 : m_repliesOwed + 1;
    m_replyOwed.setRemainingTime(replyOwedFor);
    return true;
}

void HID_PnP::waitForEndOfExchange()
{
    Flag_timeout = false;
    Flag_send = true;
    Count_timeout = 0;
    m_poll.start(TickPeriod);
    // The poll stops with the exchange. Flag_send alone would not do here: a one-way request made
    // inside the wait sets it again.
    while (m_poll.isActive() && !m_closed) {
        runEventLoop(WaitSlice);
    }
    m_poll.stop();
}

void HID_PnP::check_INPUT()
{
    if (!Flag_send) {
        return;
    }
    if (Flag_input) {
        Count_timeout = 0;
        Flag_send = false;
        Flag_input = false;
        m_poll.stop();
    } else if (++Count_timeout >= TimeoutTicks) {
        Flag_timeout = true;
        Flag_send = false;
        Flag_input = false;
        Count_timeout = 0;
        m_poll.stop();
    }
}

void HID_PnP::Communicate_AdditionalData()
{
    if (!m_myDevice) {
        return;
    }
    const hid::DeviceRef unit = m_myDevice;
    const QDeadlineTimer patience(replyTime());
    const auto busy = [this] { return m_poll.isActive() || !m_replyOwed.hasExpired(); };
    while (Flag_send && busy() && !patience.hasExpired()) {
        runEventLoop(ShortSlice);
    }
    if (m_myDevice != unit) {
        return;
    }
    OutputPacketBuffer.fill(0xFF);
    OutputPacketBuffer[0] = GET_ADDITIONAL_DATA;
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(SelectedPedalNo);
    OutputPacketBuffer[2] = static_cast<std::uint8_t>(DataNo);
    Flag_send = true;
    // Nobody waits for the reply; a refused send leaves nothing to clean up.
    (void)sendRequest(replyTime());
}

void HID_PnP::PacketReceived()
{
    Flag_input = true;
    // A reply that comes twice is taken for the next exchange's, and so is every reply after it,
    // until one of them finds nobody waiting or comes together with the next.
    if (m_replyOwed.hasExpired() && !m_repliesDoubtful.hasExpired()) {
        UnexpectedReply = true;
    }
    // A one-way request may have gone out behind another one, so one reply need not be the last.
    if (--m_repliesOwed <= 0) {
        m_replyOwed = QDeadlineTimer();
    }
    if (m_poll.isActive()) {
        // The next tick is due now; the reply need not lie around for the rest of the period.
        m_poll.start(std::chrono::milliseconds::zero());
    }
}

void HID_PnP::close()
{
    m_closed = true;
    m_replyOwed = QDeadlineTimer();
    m_hidManager->registerDeviceMatchingCallback(nullptr, nullptr);
    m_hidManager->registerDeviceRemovalCallback(nullptr, nullptr);
    if (m_myDevice) {
        m_myDevice->registerInputReportCallback(InputPacketBuffer, nullptr, nullptr);
        m_myDevice.reset();
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
