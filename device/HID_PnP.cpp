#include "HID_PnP.h"

#include "Alert.h"
#include "Log.h"
#include "RunLoop.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace kavelo {
namespace {

/// How long a reply is waited for, and how much later than that it may still come in.
std::chrono::milliseconds replyTime()
{
    return TimeoutTicks * TickPeriod;
}

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
    abandonExchange(); // it waits for a unit that has gone, while this one waits to be read
    isConnected = true;
    m_myDevice->registerInputReportCallback(InputPacketBuffer, &MyInputCallback, this);
    m_hidManager->registerDeviceRemovalCallback(&MyRemovalCallback, this);
    m_hidManager->registerDeviceMatchingCallback(nullptr, nullptr);
    DeviceDetected = true;
    DeviceDetectedChanged = true;
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
}

bool HID_PnP::Communicate(std::uint8_t CommunicationCommand, bool MessageOn)
{
    if (!m_myDevice) {
        return true;
    }
    // Other senders may fill the buffer during the waits.
    const auto exchange = std::make_shared<Exchange>(Exchange{m_myDevice, OutputPacketBuffer});
    exchange->request[0] = CommunicationCommand;
    carryOut(exchange);

    if (exchange->fate == Exchange::Fate::Answered) {
        InputPacketBuffer = exchange->reply;
        return false;
    }
    if (MessageOn && exchange->fate == Exchange::Fate::Refused) {
        alertBox(QStringLiteral("sending error"));
    } else if (exchange->fate == Exchange::Fate::TimedOut) {
        if (MessageOn) {
            alertBox(QStringLiteral("timeout"));
        }
        logLine(QStringLiteral("timeout"));
    }
    return true;
}

/// Sends the request as soon as no other exchange is running, and waits for what comes of it.
void HID_PnP::carryOut(const ExchangeRef &exchange)
{
    while (m_running) {
        runEventLoop(WaitSlice);
    }
    if (m_myDevice != exchange->unit) {
        return;
    }
    if (!send(*exchange, 2 * replyTime())) {
        exchange->fate = Exchange::Fate::Refused;
        return;
    }
    m_owed.push_back(exchange);
    m_running = exchange;
    exchange->fate = Exchange::Fate::Waiting;
    Flag_timeout = false;
    Flag_send = true;
    m_poll.start(TickPeriod);
    while (exchange->fate == Exchange::Fate::Waiting) {
        runEventLoop(WaitSlice);
    }
}

bool HID_PnP::send(Exchange &exchange, std::chrono::milliseconds replyDueIn)
{
    OutputPacketBuffer = exchange.request;
    if (!exchange.unit->setReport(OutputPacketBuffer)) {
        return false;
    }
    // A report that came in before the request is no answer to it; the answer itself can't come in
    // before the event loop runs.
    Flag_input = false;
    exchange.replyDue.setRemainingTime(replyDueIn);
    return true;
}

void HID_PnP::check_INPUT()
{
    if (!m_running) {
        return;
    }
    if (Flag_input) {
        end(Exchange::Fate::Answered);
    } else if (++Count_timeout < TimeoutTicks) {
        return;
    } else if (m_running->isDoubtful && m_running->unit == m_myDevice) {
        askAgain();
    } else {
        Flag_timeout = true;
        end(Exchange::Fate::TimedOut);
    }
}

/// One report has come in where two were due, and nothing in it tells which it was. Sends the
/// request again as soon as the reply can't be late any more.
void HID_PnP::askAgain()
{
    if (!m_running->replyDue.hasExpired()) {
        return;
    }
    m_running->isDoubtful = false;
    Count_timeout = 0;
    if (!send(*m_running, 2 * replyTime())) {
        end(Exchange::Fate::Refused);
    }
}

void HID_PnP::end(Exchange::Fate fate)
{
    m_poll.stop();
    Flag_send = false;
    Flag_input = false;
    Count_timeout = 0;
    std::exchange(m_running, nullptr)->fate = fate;
}

void HID_PnP::Communicate_AdditionalData()
{
    if (!m_myDevice) {
        return;
    }
    const auto exchange = std::make_shared<Exchange>(Exchange{m_myDevice, {}});
    while (m_running) {
        runEventLoop(WaitSlice);
    }
    if (m_myDevice != exchange->unit) {
        return;
    }
    exchange->request.fill(0xFF);
    exchange->request[0] = GET_ADDITIONAL_DATA;
    exchange->request[1] = static_cast<std::uint8_t>(SelectedPedalNo);
    exchange->request[2] = static_cast<std::uint8_t>(DataNo);
    Flag_send = true;
    if (send(*exchange, replyTime())) {
        m_owed.push_back(exchange); // to be dropped when it comes
    }
}

bool HID_PnP::isReplyOwed()
{
    std::erase_if(m_owed, [this](const ExchangeRef &exchange) {
        return exchange != m_running && exchange->replyDue.hasExpired();
    });
    return !m_owed.empty() && m_owed.front() != m_running;
}

void HID_PnP::PacketReceived()
{
    const bool isLate = isReplyOwed();
    if (m_owed.empty()) {
        // A reply that comes twice is taken for the next exchange's, and so is every reply after
        // it, until one of them finds nobody waiting.
        UnexpectedReply = true;
        Flag_input = true;
        return;
    }
    const ExchangeRef exchange = m_owed.front();
    m_owed.pop_front();
    exchange->reply = InputPacketBuffer;
    if (!isLate) {
        Flag_input = true;
        m_poll.start(std::chrono::milliseconds::zero()); // the next tick is due now
    } else if (m_running) {
        m_running->isDoubtful = true;
    }
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
    m_owed.clear();
}

void HID_PnP::abandonExchange()
{
    if (m_running) {
        end(Exchange::Fate::Abandoned);
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
