#include "AdditionalDataTransfer.h"
#include "AlertBox.h"
#include "HID_PnP.h"
#include "LinkState.h"
#include "Require.h"
#include "RunLoop.h"
#include "SimulatedBus.h"
#include "SimulatedDevice.h"
#include "SimulatedUnit.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <algorithm>
#include <array>
#include <deque>
#include <functional>
#include <span>
#include <vector>

namespace kavelo {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

/// How long after its request a reply is certain to be assigned to the right request. Until then
/// the link sends nothing else. Both times are reduced, because timers may fire a little early.
constexpr milliseconds ExchangePatience = ReplyTimeout + ReplyLateness - 2 * TickPeriod;
constexpr milliseconds OneWayPatience = ReplyTimeout - 2 * TickPeriod;

/// Time until the next event, chosen by the lower bits of an argument.
constexpr auto Pauses =
    std::to_array<milliseconds>({0ms, 0ms, 1ms, 30ms, 110ms, 900ms, ReplyTimeout - 100ms,
                                 ReplyTimeout + ReplyLateness + 100ms});
constexpr std::array<milliseconds, 4> Delays{0ms, 1ms, 30ms, ReplyTimeout - 500ms};
constexpr std::array<milliseconds, 4> Latenesses{ReplyTimeout - 10ms, ReplyTimeout + 100ms,
                                                 ReplyTimeout + ReplyLateness,
                                                 2 * ReplyTimeout + ReplyLateness};
constexpr std::array<std::uint8_t, 4> Commands{GET_VERSION_NUMBER, GET_OUTPUT_MODE_AND_DATA,
                                               SET_OUTPUT_MODE_AND_DATA, SET_PARAMETERS};
constexpr std::array<FaultKind, 6> Faults{FaultKind::None,          FaultKind::RefuseSend,
                                          FaultKind::DropReply,     FaultKind::AnswerLate,
                                          FaultKind::AnswerGarbage, FaultKind::Unplug};

template <class Table>
auto &pick(Table &table, unsigned argument)
{
    return table.at(argument % table.size());
}

/// Number of message boxes that the link has shown.
int boxesShown = 0;

/// A unit, and a deadline for each request that it has not answered yet. Until the deadline its
/// reply must be assigned to the right request.
struct TracedUnit
{
    SimulatedUnit unit;
    std::deque<QDeadlineTimer> pending;
};

/// An exchange that is identified by byte 1 of its request.
struct TaggedExchange
{
    bus::AttachmentRef unit; ///< the unit to which the request must go
    hid::Report request;
    std::vector<hid::Report> replies;
};

/// One link and two units, which the input controls by a sequence of events. Most events happen
/// while an earlier exchange still waits.
class LinkRun
{
public:
    explicit LinkRun(std::span<const std::uint8_t> input)
        : m_input(input)
    {
        m_next.setSingleShot(true);
        QObject::connect(&m_next, &QTimer::timeout, &m_next, [this] { nextEvent(); });
        for (TracedUnit &traced : m_units) {
            QObject::connect(&traced.unit, &SimulatedUnit::exchanged, &m_next,
                             [this, &traced](const Exchange &exchange) { note(traced, exchange); });
        }
    }

    void run()
    {
        m_next.start(0ms);
        while (!m_input.empty()) {
            runEventLoop(WaitSlice);
        }
        const QDeadlineTimer lastReply(10s);
        const auto isBusy = [](const TracedUnit &traced) { return !traced.pending.empty(); };
        while (std::ranges::any_of(m_units, isBusy) || !lastReply.hasExpired()) {
            runEventLoop(WaitSlice);
        }
        checkFlags();
        if (held()) {
            held()->unit->setFault({});
            held()->unit->setReplyDelay(0ms);
            require(succeeds(GET_VERSION_NUMBER, MESSAGE_ON),
                    "an exchange with a unit without faults succeeds");
        }
        require(boxesShown <= m_boxesAllowed, "only failures with MESSAGE_ON show a box");
    }

private:
    /// Carries out the next event. The first byte of an event selects its kind, the second one its
    /// argument and the time until the next event.
    void nextEvent()
    {
        if (m_input.size() < 2) {
            m_input = {};
            return;
        }
        const unsigned what = m_input[0];
        const unsigned how = m_input[1];
        m_input = m_input.subspan(2);
        m_next.start(pick(Pauses, how)); // may fire while this event still waits
        pick(m_events, what)(how / unsigned{Pauses.size()});
    }

    [[nodiscard]] SimulatedUnit &unit(unsigned argument) { return pick(m_units, argument).unit; }

    [[nodiscard]] bus::AttachmentRef held() const
    {
        const auto device = std::static_pointer_cast<SimulatedDevice>(m_link.myDevice());
        return device ? device->attachment() : nullptr;
    }

    /// Carries out an exchange. When it succeeds, checks that the reply belongs to its request.
    [[nodiscard]] bool succeeds(std::uint8_t command, bool messageOn)
    {
        TaggedExchange &exchange = m_exchanges.at(++m_tag);
        exchange.unit = held();
        OutputPacketBuffer[1] = m_tag;
        exchange.request = OutputPacketBuffer;
        exchange.request[0] = command;
        const int disturbances = m_disturbancesOver;
        if (m_link.Communicate(command, messageOn)) {
            return false;
        }
        require(m_disturbances > disturbances ||
                    std::ranges::count(exchange.replies, InputPacketBuffer) > 0,
                "a successful exchange has the reply to its own request");
        return true;
    }

    void note(TracedUnit &traced, const Exchange &exchange)
    {
        const std::uint8_t tag = exchange.request[1];
        const bool isTagged = tag >= MaxPedals; // requests for a block are not tagged
        const bus::AttachmentRef unit = held();
        const bool isHeld = unit && unit->unit == &traced.unit;
        if (exchange.outcome == Exchange::Outcome::Waiting) {
            require(isHeld, "a request goes to the held unit");
            const TaggedExchange &asked = m_exchanges.at(tag);
            require(!isTagged || (asked.unit == unit && asked.request == exchange.request),
                    "a request goes unchanged to the unit that was held when it was made");
            if (traced.pending.empty()) {
                m_disturbancesOver = m_disturbances;
            }
            traced.pending.emplace_back(isTagged ? ExchangePatience : OneWayPatience);
        } else if (exchange.outcome != Exchange::Outcome::Refused) {
            const bool isLate = traced.pending.front().hasExpired();
            traced.pending.pop_front();
            if (exchange.outcome == Exchange::Outcome::Answered && isHeld) {
                m_exchanges.at(tag).replies.push_back(exchange.reply);
                m_disturbances += isLate ? 1 : 0;
            }
        }
    }

    void checkFlags() const
    {
        const bus::AttachmentRef unit = held();
        if (m_closed) {
            require(!unit, "a closed link holds no unit");
            return;
        }
        require(unit ? unit->unit != nullptr : bus::attachments().empty(),
                "a unit that is plugged in is held");
        require(isConnected == (unit != nullptr) && DeviceDetected == isConnected,
                "isConnected and DeviceDetected say whether a unit is held");
        require(!Flag_send || m_sendsOneWay, "Flag_send is cleared after an exchange");
        require(!flag_MyNewDeviceCallback && !flag_MyRemovalCallback,
                "the guards of the callbacks are cleared");
        require(!m_dialogsUnit || m_dialogsUnit->unit != nullptr || CloseStandardSetting,
                "CloseStandardSetting is set when the unit of a dialog has gone");
    }

    std::span<const std::uint8_t> m_input;
    QTimer m_next;
    std::array<TracedUnit, 2> m_units;
    HID_PnP m_link;

    bool m_closed = false;
    bool m_sendsOneWay = false;
    int m_boxesAllowed = 0;
    bus::AttachmentRef m_dialogsUnit;
    std::uint8_t m_tag = MaxPedals;
    std::array<TaggedExchange, 256> m_exchanges;
    /// Number of reports that the link cannot distinguish from a reply: reports without a request,
    /// and replies after the deadline. After one of them, replies may be assigned to the wrong
    /// requests until no reply is due.
    int m_disturbances = 0;
    int m_disturbancesOver = 0;

    /// The kinds of events.
    std::array<std::function<void(unsigned)>, 10> m_events{
        [this](unsigned how) {
            const bool messageOn = how % 2 == 1;
            if (!succeeds(pick(Commands, how / 2), messageOn) && messageOn) {
                ++m_boxesAllowed;
            }
        },
        [this](unsigned how) {
            const bool messageOn = how % 2 == 1;
            const int pedal = static_cast<int>(how / 2) % MaxPedals;
            if (readAdditionalData(m_link, pedal, messageOn) && messageOn) {
                ++m_boxesAllowed;
            }
        },
        [this](unsigned how) {
            SelectedPedalNo = static_cast<int>(how % MaxPedals);
            m_sendsOneWay = true;
            m_link.Communicate_AdditionalData();
        },
        [this](unsigned how) {
            (bus::isPluggedIn(unit(how)) ? bus::unplug : bus::plugIn)(unit(how));
        },
        [this](unsigned how) { // a report without a request
            ++m_disturbances;
            Q_EMIT unit(how).inputReport({0xEE, 0xEE});
        },
        [this](unsigned how) {
            for (TracedUnit &traced : m_units) {
                traced.unit.setFault({pick(Faults, how), static_cast<int>(how / Faults.size())});
            }
        },
        [this](unsigned how) { unit(how).setReplyDelay(pick(Delays, how / 2)); },
        [this](unsigned how) { unit(how).setLateness(pick(Latenesses, how / 2)); },
        [this](unsigned /*how*/) { // a dialog opens
            m_dialogsUnit = held();
            StandardSettingDialogOpen = m_dialogsUnit != nullptr;
            CloseStandardSetting = false;
        },
        [this](unsigned /*how*/) {
            m_closed = true;
            m_link.close();
        },
    };
};

} // namespace
} // namespace kavelo

/// Counts a message box instead of showing it. Runs the event loop, as a box does.
void kavelo::alertBox(const QString & /*Message*/)
{
    ++boxesShown;
    runEventLoop(0ms);
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

/// The input is a sequence of events of two bytes each; see LinkRun.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    kavelo::resetLinkState();
    kavelo::bus::reset();
    kavelo::boxesShown = 0;
    kavelo::LinkRun(std::span(bytes, size)).run();
    return 0;
}
