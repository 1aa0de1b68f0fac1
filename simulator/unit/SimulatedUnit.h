#pragma once

#include "Hid.h"
#include "PedalSetting.h"
#include "Protocol.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <random>
#include <vector>

namespace kavelo {

/// What the unit keeps for one pedal.
struct PedalMemory
{
    std::uint8_t mode = SIMPLE_KEY_OUTPUT;
    CommonRecord record{};
    AdditionalBlock additional{};

    bool operator==(const PedalMemory &) const = default;
};

/// The unit's flash: everything that outlives a loss of power. It starts in the factory state.
struct UnitMemory
{
    /// Major, minor and revision of the firmware.
    std::array<std::uint8_t, 3> version{2, 1, 0};
    /// Reported as it stands, sensible or not. Only pedals below both it and MaxPedals exist.
    std::uint8_t numberOfPedals = MaxPedals;
    /// Chattering settling, modifier preceding, double click on and double click off time.
    std::array<std::uint8_t, 4> timing{
        static_cast<std::uint8_t>(CHATTERING_SETTLING_TIME),
        static_cast<std::uint8_t>(MODIFIER_PRECEDING_TIME),
        static_cast<std::uint8_t>(DOUBLE_CLICK_ON_TIME),
        static_cast<std::uint8_t>(DOUBLE_CLICK_OFF_TIME),
    };
    /// Left click, Enter, right click, left arrow, right arrow.
    std::array<PedalMemory, MaxPedals> pedals = std::to_array<PedalMemory>({
        {.mode = SIMPLE_CLICK, .record = {1}},
        {.mode = SIMPLE_KEY_OUTPUT, .record = {0, 0x28}},
        {.mode = SIMPLE_CLICK, .record = {2}},
        {.mode = SIMPLE_KEY_OUTPUT, .record = {0, 0x50}},
        {.mode = SIMPLE_KEY_OUTPUT, .record = {0, 0x4F}},
    });

    bool operator==(const UnitMemory &) const = default;
};

enum class FaultKind {
    None,
    RefuseSend,    ///< the request does not get in
    DropReply,     ///< the request is carried out but not answered
    AnswerLate,    ///< the reply takes the unit's lateness instead of its reply delay
    AnswerTwice,   ///< the reply comes again, one reply delay later
    AnswerGarbage, ///< the request is carried out; the reply is random bytes
    Unplug         ///< the request is carried out and the unit goes, without a reply
};

/// A fault and when it strikes.
struct Fault
{
    FaultKind kind = FaultKind::None;
    /// Which exchange it strikes, counted from 1 for the next one; 0 is every exchange.
    int exchange = 0;
    /// It strikes only requests that begin with these bytes, and only these are counted.
    std::vector<std::uint8_t> request{};
};

/// One request to the unit and what came of it.
struct Exchange
{
    enum class Outcome { Waiting, Answered, Refused, NoReply };

    int number = 0;                               ///< from 1 on, in the order of the requests
    std::chrono::system_clock::time_point time{}; ///< when the request came
    hid::Report request{};
    Outcome outcome = Outcome::Waiting;
    hid::Report reply{}; ///< meaningful when the outcome is Answered
};

/// The pedal unit's firmware behind its vendor interface: takes requests and answers them one at a
/// time, each after the reply delay. It needs power, which the bus gives it.
///
/// A reply echoes the request's bytes 0 and 1. Of the commands that write, and of a request that
/// can't be carried out (unknown command, no such pedal or piece, a value out of range), reply
/// byte 2 is a status: 0 done, 0xFF not done and nothing changed. The other bytes are 0.
class SimulatedUnit : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SimulatedUnit)

public:
    static constexpr std::chrono::milliseconds MaxReplyDelay{5000}; ///< longer than the timeout
    static constexpr std::uint8_t RejectedStatus = 0xFF;

    explicit SimulatedUnit(QObject *parent = nullptr);
    ~SimulatedUnit() override;

    [[nodiscard]] UnitMemory &memory() { return m_memory; }
    [[nodiscard]] const UnitMemory &memory() const { return m_memory; }

    /// Puts everything but the firmware version and the number of pedals into the factory state.
    void factorySettings();

    /// What the device shows itself as.
    [[nodiscard]] static const hid::Matching &matching() { return KaveloMatching; }

    /// How long the unit works on a request, 0 to MaxReplyDelay; 0 answers in the event loop's
    /// next turn. Requests already taken in keep the delay that they came with.
    void setReplyDelay(std::chrono::milliseconds delay);
    [[nodiscard]] std::chrono::milliseconds replyDelay() const { return m_replyDelay; }

    /// How long a reply with the fault AnswerLate takes; 0 or more.
    void setLateness(std::chrono::milliseconds lateness);
    [[nodiscard]] std::chrono::milliseconds lateness() const { return m_lateness; }

    /// Sets the one fault and starts to count its exchanges anew.
    void setFault(const Fault &fault);
    [[nodiscard]] const Fault &fault() const { return m_fault; }

    /// Power on or off. Without power the unit refuses every request; going off, it drops the
    /// replies that are due, while what was written stays.
    void setPowered(bool powered);
    [[nodiscard]] bool isPowered() const { return m_powered; }

    /// Takes one output report and carries it out at once and whole; false when it is refused.
    /// The reply follows through the event loop, never from inside this call.
    bool receive(const hid::Report &request);

Q_SIGNALS:
    void inputReport(const kavelo::hid::Report &report);

    /// Emitted when a request comes in, with the outcome Waiting or Refused, and again for a
    /// waiting one when its reply goes out, just before inputReport(), or proves to be lost.
    void exchanged(const kavelo::Exchange &exchange);

    void poweredChanged(bool powered);

private:
    struct Pending
    {
        Exchange exchange; ///< as it will be when it is over
        std::chrono::milliseconds delay{};
        bool isRepetition = false; ///< of the reply; the exchange is over already
    };

    [[nodiscard]] FaultKind nextFault(const hid::Report &request);
    [[nodiscard]] hid::Report carryOut(const hid::Report &request);
    [[nodiscard]] hid::Report garbage();
    void startOnFirst();
    void finishFirst();

    UnitMemory m_memory;
    bool m_powered = false;

    std::chrono::milliseconds m_replyDelay{0};
    std::chrono::milliseconds m_lateness = ReplyTimeout + ReplyLateness;
    Fault m_fault;
    int m_exchangesSinceFaultSet = 0;
    std::mt19937 m_garbage;

    int m_exchangeCount = 0;
    std::deque<Pending> m_pending; ///< the first is being worked on
    QTimer m_work;                 ///< runs while the unit works on the first
};

} // namespace kavelo
