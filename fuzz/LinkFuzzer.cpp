#include "AdditionalDataTransfer.h"
#include "BoxWatcher.h"
#include "HID_PnP.h"
#include "LinkState.h"
#include "Require.h"
#include "RunLoop.h"
#include "SimulatedBus.h"
#include "SimulatedDevice.h"
#include "SimulatedUnit.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

#include <algorithm>
#include <array>
#include <deque>
#include <span>
#include <vector>

namespace kavelo {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

/// How long after a request its reply can still not be taken for a later one's: the exchange's own
/// wait and the time that the link lets it come in late. Of a one-way request it is the latter.
/// Ticks may come a little early.
constexpr milliseconds ExchangePatience{5800};
constexpr milliseconds OneWayPatience{2800};

/// A request that is not answered yet.
struct PendingRequest
{
    qint64 sent; ///< in ms
    milliseconds patience;
};

/// A simulated unit and what it still has to answer.
struct TracedUnit
{
    SimulatedUnit unit;
    std::deque<PendingRequest> pending;
};

/// One link and two units, to which the input's events happen, most of them inside the waits of
/// earlier ones.
class LinkRun
{
public:
    explicit LinkRun(std::span<const std::uint8_t> input);
    LinkRun(const LinkRun &) = delete;
    LinkRun &operator=(const LinkRun &) = delete;
    ~LinkRun() { bus::reset(); }

    void run();

private:
    using Happening = void (LinkRun::*)(unsigned argument);
    static const std::array<Happening, 10> Happenings;

    // What can happen.
    void exchange(unsigned argument);
    void readBlock(unsigned argument);
    void sendOneWay(unsigned argument);
    void plugOrUnplug(unsigned argument);
    void sendUnasked(unsigned argument);
    void setFault(unsigned argument);
    void setDelay(unsigned argument);
    void setLateness(unsigned argument);
    void openDialog(unsigned argument);
    void closeLink(unsigned argument);

    void nextHappening();
    void disturb();
    void follow(TracedUnit &traced);
    void noteRequest(TracedUnit &traced, const Exchange &exchange);
    void noteEnd(TracedUnit &traced, const Exchange &exchange);
    [[nodiscard]] bool exchangeTagged(std::uint8_t command, bool messageOn);
    [[nodiscard]] bus::AttachmentRef held() const;
    void settle();
    void checkFlags() const;
    void checkRecovery();

    std::span<const std::uint8_t> m_input;
    QTimer m_next;
    std::array<TracedUnit, 2> m_units;
    BoxWatcher m_boxes;
    HID_PnP m_link;

    bool m_closed = false;
    bool m_sendsOneWay = false;
    qsizetype m_boxesAllowed = 0;
    bus::AttachmentRef m_dialogsUnit;
    /// For each record that is written, by its last byte, which unit it is meant for.
    std::array<bus::AttachmentRef, 256> m_recordsUnit;
    std::uint8_t m_lastRecord = 0;

    QElapsedTimer m_clock;
    /// Byte 1 of the last request that can be told from others. The pieces' stay below.
    std::uint8_t m_tag = MaxPedals;
    /// What the units have answered to the requests with a tag.
    std::array<std::vector<hid::Report>, 256> m_replies;
    /// Something came in that a reply can't be told from: a report nobody asked for, or a reply
    /// after the link's patience. Replies may be taken for others until none is due.
    bool m_disturbed = false;
    int m_disturbances = 0;
};

const std::array<LinkRun::Happening, 10> LinkRun::Happenings{
    &LinkRun::exchange,    &LinkRun::readBlock, &LinkRun::sendOneWay, &LinkRun::plugOrUnplug,
    &LinkRun::sendUnasked, &LinkRun::setFault,  &LinkRun::setDelay,   &LinkRun::setLateness,
    &LinkRun::openDialog,  &LinkRun::closeLink,
};

/// Until the next happening, by the lower bits of an argument.
constexpr std::array<milliseconds, 8> Pauses{0ms, 0ms, 1ms, 30ms, 110ms, 900ms, 2900ms, 4100ms};
constexpr std::array<milliseconds, 4> Delays{0ms, 1ms, 30ms, 2500ms};
constexpr std::array<milliseconds, 4> Latenesses{2990ms, 3100ms, 4000ms, 7000ms};
constexpr std::array<std::uint8_t, 4> Commands{GET_VERSION_NUMBER, GET_OUTPUT_MODE_AND_DATA,
                                               SET_OUTPUT_MODE_AND_DATA, SET_PARAMETERS};
constexpr std::array<FaultKind, 6> Faults{FaultKind::None,          FaultKind::RefuseSend,
                                          FaultKind::DropReply,     FaultKind::AnswerLate,
                                          FaultKind::AnswerGarbage, FaultKind::Unplug};

template <class Table>
auto pick(const Table &table, unsigned argument)
{
    return table.at(argument % table.size());
}

LinkRun::LinkRun(std::span<const std::uint8_t> input)
    : m_input(input)
{
    m_clock.start();
    m_next.setSingleShot(true);
    QObject::connect(&m_next, &QTimer::timeout, &m_next, [this] { nextHappening(); });
    for (TracedUnit &traced : m_units) {
        follow(traced);
    }
}

void LinkRun::run()
{
    m_next.start(0ms);
    while (!m_input.empty()) {
        runEventLoop(WaitSlice);
    }
    settle();
    checkFlags();
    checkRecovery();
    require(m_boxes.messages().size() <= m_boxesAllowed, "only a failure that may be told is told");
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        require(qobject_cast<const QMessageBox *>(widget) == nullptr, "no message box is left");
    }
}

/// Two bytes: what happens; how, and when the next follows.
void LinkRun::nextHappening()
{
    if (m_input.size() < 2) {
        m_input = {};
        return;
    }
    const unsigned what = m_input[0];
    const unsigned how = m_input[1];
    m_input = m_input.subspan(2);
    m_next.start(pick(Pauses, how)); // due also inside a wait of this one
    (this->*pick(Happenings, what))(how / unsigned{Pauses.size()});
}

void LinkRun::disturb()
{
    m_disturbed = true;
    ++m_disturbances;
}

void LinkRun::exchange(unsigned argument)
{
    const std::uint8_t command = pick(Commands, argument / 2);
    const bool messageOn = argument % 2 == 1;
    const bus::AttachmentRef unit = held();
    if (command == SET_OUTPUT_MODE_AND_DATA) {
        m_recordsUnit.at(++m_lastRecord) = unit;
        OutputPacketBuffer.back() = m_lastRecord;
    }
    if (!exchangeTagged(command, messageOn)) {
        m_boxesAllowed += messageOn ? 1 : 0;
        return;
    }
    require(unit != nullptr, "without a unit an exchange fails");
}

/// Carries out an exchange and checks, if it succeeds, that the reply is its own.
bool LinkRun::exchangeTagged(std::uint8_t command, bool messageOn)
{
    m_tag = std::max<std::uint8_t>(m_tag + 1, MaxPedals);
    std::vector<hid::Report> &replies = m_replies.at(m_tag);
    replies.clear();
    OutputPacketBuffer[1] = m_tag;
    const int disturbances = m_disturbances - (m_disturbed ? 1 : 0);
    if (m_link.Communicate(command, messageOn)) {
        return false;
    }
    require(m_disturbances > disturbances || std::ranges::count(replies, InputPacketBuffer) > 0,
            "a success has the request's own reply");
    return true;
}

void LinkRun::readBlock(unsigned argument)
{
    const bool messageOn = argument % 2 == 1;
    if (readAdditionalData(m_link, static_cast<int>(argument / 2) % MaxPedals, messageOn)) {
        m_boxesAllowed += messageOn ? 1 : 0;
    }
}

void LinkRun::sendOneWay(unsigned argument)
{
    SelectedPedalNo = static_cast<int>(argument % MaxPedals);
    m_sendsOneWay = true;
    m_link.Communicate_AdditionalData();
}

void LinkRun::plugOrUnplug(unsigned argument)
{
    SimulatedUnit &unit = pick(std::array{&m_units[0], &m_units[1]}, argument)->unit;
    if (bus::isPluggedIn(unit)) {
        bus::unplug(unit);
    } else {
        bus::plugIn(unit);
    }
}

void LinkRun::sendUnasked(unsigned argument)
{
    disturb();
    Q_EMIT m_units.at(argument % m_units.size()).unit.inputReport({0xEE, 0xEE});
}

void LinkRun::setFault(unsigned argument)
{
    for (TracedUnit &traced : m_units) {
        traced.unit.setFault({.kind = pick(Faults, argument),
                              .exchange = static_cast<int>(argument / Faults.size())});
    }
}

void LinkRun::setDelay(unsigned argument)
{
    m_units.at(argument % m_units.size()).unit.setReplyDelay(pick(Delays, argument / 2));
}

void LinkRun::setLateness(unsigned argument)
{
    m_units.at(argument % m_units.size()).unit.setLateness(pick(Latenesses, argument / 2));
}

void LinkRun::openDialog(unsigned /*argument*/)
{
    m_dialogsUnit = held();
    StandardSettingDialogOpen = m_dialogsUnit != nullptr;
    CloseStandardSetting = false;
}

void LinkRun::closeLink(unsigned /*argument*/)
{
    m_closed = true;
    m_link.close();
}

void LinkRun::follow(TracedUnit &traced)
{
    // A unit that goes ends what it has pending while it is destroyed; so late nobody listens.
    QObject::connect(&traced.unit, &SimulatedUnit::exchanged, &m_next,
                     [this, &traced](const Exchange &exchange) {
                         if (exchange.outcome == Exchange::Outcome::Waiting) {
                             noteRequest(traced, exchange);
                         } else if (exchange.outcome != Exchange::Outcome::Refused) {
                             noteEnd(traced, exchange);
                         }
                     });
}

void LinkRun::noteRequest(TracedUnit &traced, const Exchange &exchange)
{
    const hid::Report &request = exchange.request;
    const bus::AttachmentRef unit = held();
    require(unit && unit->unit == &traced.unit, "a request goes to the held unit");
    require(request[0] != SET_OUTPUT_MODE_AND_DATA || m_recordsUnit.at(request.back()) == unit,
            "a record goes to the unit that it is meant for");
    const bool isOneWay = std::ranges::count(request, 0xFF) >= std::ssize(request) - 3;
    if (traced.pending.empty()) {
        m_disturbed = false;
    }
    traced.pending.push_back({m_clock.elapsed(), isOneWay ? OneWayPatience : ExchangePatience});
}

void LinkRun::noteEnd(TracedUnit &traced, const Exchange &exchange)
{
    const PendingRequest request = traced.pending.front();
    traced.pending.pop_front();
    const bus::AttachmentRef unit = held();
    if (exchange.outcome == Exchange::Outcome::Answered && unit && unit->unit == &traced.unit) {
        m_replies.at(exchange.request[1]).push_back(exchange.reply);
        if (milliseconds(m_clock.elapsed() - request.sent) > request.patience) {
            disturb();
        }
    }
}

bus::AttachmentRef LinkRun::held() const
{
    const auto device = std::static_pointer_cast<SimulatedDevice>(m_link.myDevice());
    return device ? device->attachment() : nullptr;
}

/// Lets everything come that is still due.
void LinkRun::settle()
{
    const qint64 start = m_clock.elapsed();
    const auto isBusy = [](const TracedUnit &traced) { return !traced.pending.empty(); };
    while (std::ranges::any_of(m_units, isBusy) || m_clock.elapsed() - start < 10000) {
        runEventLoop(WaitSlice);
    }
}

void LinkRun::checkFlags() const
{
    if (m_closed) {
        require(!m_link.myDevice(), "a closed link holds no unit");
        return;
    }
    const bus::AttachmentRef unit = held();
    require(unit ? unit->unit != nullptr : bus::attachments().empty(),
            "a unit that is there is held");
    require(isConnected == (unit != nullptr), "isConnected");
    require(DeviceDetected == isConnected, "DeviceDetected");
    require(!Flag_send || m_sendsOneWay, "no exchange is left open");
    require(!flag_MyNewDeviceCallback && !flag_MyRemovalCallback, "no callback is left open");
    if (m_dialogsUnit != nullptr && m_dialogsUnit->unit == nullptr) {
        require(CloseStandardSetting, "the dialog of a unit that has gone is to close");
    }
}

/// Whatever has happened, a unit that works again is understood again.
void LinkRun::checkRecovery()
{
    const bus::AttachmentRef unit = held();
    if (unit == nullptr) {
        return;
    }
    unit->unit->setFault({});
    unit->unit->setReplyDelay(0ms);
    require(exchangeTagged(GET_VERSION_NUMBER, MESSAGE_ON),
            "a unit that works again is understood again");
}

} // namespace
} // namespace kavelo

/// Read by LeakSanitizer: what fontconfig keeps until the process is gone is no leak.
extern "C" const char *__lsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier)
extern "C" const char *__lsan_default_suppressions()  // NOLINT(bugprone-reserved-identifier)
{
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_NO_GLIB", "1"); // Qt's own event loop sleeps in ppoll(), see JumpingClock.cpp
    static const QApplication application(*argc, *argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return 0;
}

/// The input is what happens, two bytes each; see LinkRun.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    kavelo::resetLinkState();
    kavelo::LinkRun(std::span(bytes, size)).run();
    return 0;
}
