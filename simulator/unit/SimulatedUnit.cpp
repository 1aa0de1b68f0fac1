#include "SimulatedUnit.h"

#include <algorithm>
#include <span>
#include <utility>

namespace kavelo {
namespace {

constexpr std::size_t PieceSize = ADDITIONAL_DATA_ONE_TIME;

PedalMemory *findPedal(UnitMemory &memory, std::uint8_t index)
{
    const bool exists = index < memory.numberOfPedals && index < MaxPedals;
    return exists ? &memory.pedals.at(index) : nullptr;
}

bool getVersionNumber(SimulatedUnit &unit, const hid::Report & /*request*/, hid::Report &reply)
{
    std::ranges::copy(unit.memory().version, reply.begin() + 2);
    return true;
}

bool getNumberOfPedals(SimulatedUnit &unit, const hid::Report & /*request*/, hid::Report &reply)
{
    reply[2] = unit.memory().numberOfPedals;
    return true;
}

/// Request bytes 1 to 4: the timing parameters.
bool setParameters(SimulatedUnit &unit, const hid::Report &request, hid::Report & /*reply*/)
{
    std::copy_n(request.begin() + 1, unit.memory().timing.size(), unit.memory().timing.begin());
    return true;
}

bool setOutputModeAndData(SimulatedUnit &unit, const hid::Report &request, hid::Report & /*reply*/)
{
    PedalMemory *const pedal = findPedal(unit.memory(), request[1]);
    if (pedal == nullptr) {
        return false;
    }
    pedal->mode = request[2];
    std::copy_n(request.begin() + 3, pedal->record.size(), pedal->record.begin());
    return true;
}

bool getOutputModeAndData(SimulatedUnit &unit, const hid::Report &request, hid::Report &reply)
{
    const PedalMemory *const pedal = findPedal(unit.memory(), request[1]);
    if (pedal == nullptr) {
        return false;
    }
    reply[2] = pedal->mode;
    std::ranges::copy(pedal->record, reply.begin() + 3);
    return true;
}

bool getAdditionalData(SimulatedUnit &unit, const hid::Report &request, hid::Report &reply)
{
    const PedalMemory *const pedal = findPedal(unit.memory(), request[1]);
    const std::size_t start = request[2] * PieceSize;
    if (pedal == nullptr || start >= pedal->additional.size()) {
        return false;
    }
    const std::size_t size = std::min(PieceSize, pedal->additional.size() - start);
    std::ranges::copy(std::span(pedal->additional).subspan(start, size), reply.begin() + 2);
    return true;
}

struct Command
{
    std::uint8_t code;
    /// Fills the reply from byte 2 on. Returns false when the request can't be carried out.
    bool (*carryOut)(SimulatedUnit &unit, const hid::Report &request, hid::Report &reply);
};

constexpr std::array<Command, 6> Commands{{
    {GET_VERSION_NUMBER, getVersionNumber},
    {GET_NUMBER_OF_PEDALS, getNumberOfPedals},
    {SET_PARAMETERS, setParameters},
    {SET_OUTPUT_MODE_AND_DATA, setOutputModeAndData},
    {GET_OUTPUT_MODE_AND_DATA, getOutputModeAndData},
    {GET_ADDITIONAL_DATA, getAdditionalData},
}};

} // namespace

SimulatedUnit::SimulatedUnit(QObject *parent)
    : QObject(parent)
{
    m_work.setSingleShot(true);
    m_work.setTimerType(Qt::PreciseTimer);
    connect(&m_work, &QTimer::timeout, this, &SimulatedUnit::finishFirst);
}

SimulatedUnit::~SimulatedUnit()
{
    m_pending.clear();
    setPowered(false);
}

void SimulatedUnit::factorySettings()
{
    const UnitMemory old = std::exchange(m_memory, {});
    m_memory.version = old.version;
    m_memory.numberOfPedals = old.numberOfPedals;
}

void SimulatedUnit::setReplyDelay(std::chrono::milliseconds delay)
{
    m_replyDelay = std::clamp(delay, std::chrono::milliseconds{0}, MaxReplyDelay);
}

void SimulatedUnit::setLateness(std::chrono::milliseconds lateness)
{
    m_lateness = std::max(lateness, std::chrono::milliseconds{0});
}

void SimulatedUnit::setFault(const Fault &fault)
{
    m_fault = fault;
    m_exchangesSinceFaultSet = 0;
}

void SimulatedUnit::setPowered(bool powered)
{
    if (powered == m_powered) {
        return;
    }
    m_powered = powered;
    m_work.stop();
    for (Pending &lost : std::exchange(m_pending, {})) {
        lost.exchange.outcome = Exchange::Outcome::NoReply;
        if (!lost.isRepetition) {
            Q_EMIT exchanged(lost.exchange);
        }
    }
    Q_EMIT poweredChanged(powered);
}

bool SimulatedUnit::receive(const hid::Report &request)
{
    if (!m_powered) {
        return false;
    }
    const FaultKind fault = nextFault(request);
    Exchange exchange{
        .number = ++m_exchangeCount, .time = std::chrono::system_clock::now(), .request = request};
    if (fault == FaultKind::RefuseSend) {
        exchange.outcome = Exchange::Outcome::Refused;
        Q_EMIT exchanged(exchange);
        return false;
    }

    Pending pending{.exchange = exchange,
                    .delay = fault == FaultKind::AnswerLate ? m_lateness : m_replyDelay};
    pending.exchange.outcome =
        fault == FaultKind::DropReply ? Exchange::Outcome::NoReply : Exchange::Outcome::Answered;
    const hid::Report reply = carryOut(request);
    pending.exchange.reply = fault == FaultKind::AnswerGarbage ? garbage() : reply;
    m_pending.push_back(pending);
    if (fault == FaultKind::AnswerTwice) {
        m_pending.push_back({pending.exchange, pending.delay, true});
    }
    if (!m_work.isActive()) {
        startOnFirst();
    }
    Q_EMIT exchanged(exchange);
    if (fault == FaultKind::Unplug) {
        setPowered(false);
    }
    return true;
}

FaultKind SimulatedUnit::nextFault(const hid::Report &request)
{
    if (!std::equal(m_fault.request.begin(), m_fault.request.end(), request.begin())) {
        return FaultKind::None;
    }
    ++m_exchangesSinceFaultSet;
    const bool strikes = m_fault.exchange == 0 || m_fault.exchange == m_exchangesSinceFaultSet;
    return strikes ? m_fault.kind : FaultKind::None;
}

void SimulatedUnit::startOnFirst()
{
    m_work.start(m_pending.front().delay);
}

void SimulatedUnit::finishFirst()
{
    const auto [finished, delay, isRepetition] = m_pending.front();
    m_pending.pop_front();
    // The receiver of the reply may run the event loop, so the next request is started first.
    if (!m_pending.empty()) {
        startOnFirst();
    }
    if (!isRepetition) {
        Q_EMIT exchanged(finished);
    }
    if (finished.outcome == Exchange::Outcome::Answered) {
        Q_EMIT inputReport(finished.reply);
    }
}

hid::Report SimulatedUnit::garbage()
{
    hid::Report report{};
    std::ranges::generate(report, [this] { return static_cast<std::uint8_t>(m_garbage()); });
    return report;
}

hid::Report SimulatedUnit::carryOut(const hid::Report &request)
{
    hid::Report reply{request[0], request[1]};
    const auto *const command = std::ranges::find(Commands, request[0], &Command::code);
    if (command == Commands.end() || !command->carryOut(*this, request, reply)) {
        reply[2] = RejectedStatus;
    }
    return reply;
}

} // namespace kavelo
