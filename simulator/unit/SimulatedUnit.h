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

/// The unit's setting of one pedal.
struct PedalMemory
{
    std::uint8_t mode = SIMPLE_KEY_OUTPUT;
    CommonRecord record{};
    AdditionalBlock additional{};

    bool operator==(const PedalMemory &) const = default;
};

/// The unit's flash memory, which survives a loss of power. It starts in the factory state.
struct UnitMemory
{
    /// Major, minor and revision of the firmware.
    std::array<std::uint8_t, 3> version{2, 1, 0};
    /// The number that the unit reports, which may be an impossible one. A pedal exists when its
    /// index is below this number and below MaxPedals.
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
    RefuseSend,    ///< the request is not taken
    DropReply,     ///< the request is carried out but not answered
    AnswerLate,    ///< the reply takes the unit's lateness instead of its reply delay
    AnswerTwice,   ///< the reply comes again, one reply delay later
    AnswerGarbage, ///< the request is carried out; the reply is random bytes
    Unplug         ///< the request is carried out; the unit loses power and does not answer
};

/// A fault, and the exchanges in which it happens.
struct Fault
{
    FaultKind kind = FaultKind::None;
    /// The exchange with the fault, counted from 1 for the next exchange; 0 for every exchange.
    int exchange = 0;
    /// Only exchanges whose request begins with these bytes have the fault and are counted.
    std::vector<std::uint8_t> request{};
};

/// One request to the unit, and its outcome.
struct Exchange
{
    enum class Outcome { Waiting, Answered, Refused, NoReply };

    int number = 0;                               ///< counts the requests from 1 on
    std::chrono::system_clock::time_point time{}; ///< when the request came
    hid::Report request{};
    Outcome outcome = Outcome::Waiting;
    hid::Report reply{}; ///< meaningful when the outcome is Answered
};

/// The report descriptor of the unit's settings interface, in hexadecimal: one application
/// collection of the vendor's page 0xFF00, with an input and an output report of 16 bytes and
/// without report IDs.
constexpr const char *UnitReportDescriptor = "0600ff0901" // usage page, usage
                                             "a101"       // application collection
                                             "150026ff00" // values from 0 to 255
                                             "75089510"   // 8 bits, 16 times
                                             "09028102"   // usage, input
                                             "09039102"   // usage, output
                                             "c0";        // end of the collection

/// The firmware of the pedal unit. It takes requests and answers them one at a time, each after the
/// reply delay. It works only with power, which the bus gives it.
///
/// Bytes 0 and 1 of a reply are those of the request. Byte 2 of the reply to a command that writes
/// is 0. Byte 2 of the reply to a request that can't be carried out is RejectedStatus; such a
/// request has an unknown command, or names a pedal or a piece that does not exist. It changes
/// nothing. All bytes without a meaning are 0. The utility does not look at byte 2 in either case.
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

    /// The vendor, product and usage page of the device.
    [[nodiscard]] static const hid::Matching &matching() { return KaveloMatching; }

    /// How long the unit works on a request, 0 to MaxReplyDelay. With 0 it answers in the next turn
    /// of the event loop. Requests that have come keep the delay that they came with.
    void setReplyDelay(std::chrono::milliseconds delay);
    [[nodiscard]] std::chrono::milliseconds replyDelay() const { return m_replyDelay; }

    /// How long a reply with the fault AnswerLate takes; 0 or more.
    void setLateness(std::chrono::milliseconds lateness);
    [[nodiscard]] std::chrono::milliseconds lateness() const { return m_lateness; }

    /// Replaces the fault. Its exchanges are counted from here on.
    void setFault(const Fault &fault);
    [[nodiscard]] const Fault &fault() const { return m_fault; }

    /// Turns the power on or off. Without power the unit refuses every request. A unit that loses
    /// its power sends no more replies and keeps its memory.
    void setPowered(bool powered);
    [[nodiscard]] bool isPowered() const { return m_powered; }

    /// Takes one output report and carries it out at once; false when it is refused. The reply
    /// comes later through the event loop.
    bool receive(const hid::Report &request);

Q_SIGNALS:
    void inputReport(const kavelo::hid::Report &report);

    /// Emitted when a request has come, with the outcome Waiting or Refused. Emitted again for a
    /// waiting request: just before inputReport() when there is a reply, otherwise when it is lost.
    void exchanged(const kavelo::Exchange &exchange);

    void poweredChanged(bool powered);

private:
    struct Pending
    {
        Exchange exchange; ///< with its final outcome
        std::chrono::milliseconds delay{};
        bool isRepetition = false; ///< a second reply to an exchange that is over
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
    std::deque<Pending> m_pending; ///< the unit works on the first one
    QTimer m_work;                 ///< runs while the unit works on a request
};

} // namespace kavelo
