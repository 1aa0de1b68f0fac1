#pragma once

#include "Hid.h"
#include "Protocol.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <memory>
#include <span>

namespace kavelo {

class HID_PnP;

// What the link tells the rest of the program. The link never calls the windows; they poll.

/// The link that the device callbacks forward to. Set and cleared by the link itself.
inline HID_PnP *selfRef = nullptr;
/// A unit is held. Set by the link; enables the restore menu item.
inline bool isConnected = false;
/// The unit is present. Set by the link, read by the update loop.
inline bool DeviceDetected = false;
/// A connection change waits to be handled. Set by the link, cleared by the update loop.
inline bool DeviceDetectedChanged = false;
/// The Standard dialog is open. Set by the editing flow, cleared by the dialog, read by the link.
inline bool StandardSettingDialogOpen = false;
/// The open Standard dialog must close, its unit is gone. Set by the link, cleared by the dialog.
inline bool CloseStandardSetting = false;
/// A report has come in that answers nothing: replies may have been taken for one another's. Set by
/// the link, cleared by the main window before it talks at length.
inline bool UnexpectedReply = false;

// Guards of the callbacks against re-entry; set and read by the callbacks only.
inline bool flag_MyNewDeviceCallback = false;
inline bool flag_MyRemovalCallback = false;

// State of the running exchange, set by the link only.

/// A request is out and its exchange is not finished. A one-way request leaves it set.
inline bool Flag_send = false;
/// A report has come in, and it is not the late reply to an earlier request.
inline bool Flag_input = false;
/// The last exchange ran out of time.
inline bool Flag_timeout = false;
/// Ticks that the current reply has been waited for.
inline int Count_timeout = 0;

/// The device link: finds the unit, follows its arrival and removal, and carries out one command
/// exchange at a time. It holds at most one unit; while it holds one it listens for removals, else
/// for arrivals.
class HID_PnP : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HID_PnP)

public:
    /// Opens the HID manager and looks for a unit at once, so that a connection change is pending
    /// afterwards whether or not there is one.
    explicit HID_PnP(QObject *parent = nullptr);
    ~HID_PnP() override;

    [[nodiscard]] hid::Manager &hidManager() const { return *m_hidManager; }
    /// The held unit; null when there is none.
    [[nodiscard]] const hid::DeviceRef &myDevice() const { return m_myDevice; }

    /// Releases the held unit, if any, and waits for the next one.
    void DeviceRemoved();
    /// Takes the first matching device into use, or does as DeviceRemoved() when there is none.
    void NewDeviceDetected();

    /// Exchanges one command with the unit. The caller has filled OutputPacketBuffer from byte 1
    /// on; the reply is in InputPacketBuffer afterwards. Runs the event loop while it waits, and
    /// everything, also another exchange, may happen inside: an exchange that finds one running
    /// lets it end first. The wait for the reply takes at most 30 ticks of 0.1 s. It begins anew
    /// when the only report that came in may have been the late reply to an earlier request: the
    /// request is then sent once more, as soon as no reply can be late any more.
    ///
    /// Returns true on failure: no unit, the send was refused ("sending error"), no reply in time
    /// ("timeout"), or, silently, when the unit has changed or the link was closed meanwhile. With
    /// `MessageOn` the first two kinds of trouble on the wire are shown in a message box.
    bool Communicate(std::uint8_t CommunicationCommand, bool MessageOn);

    /// One tick of the running exchange; the only place that finds its reply or its timeout.
    void check_INPUT();

    /// Asks for a piece (`DataNo`) of the selected pedal's additional block without waiting for
    /// the reply, which nothing stores. Lets a running exchange end first.
    void Communicate_AdditionalData();

    /// Whether the reply to a request that nobody waits for any more can still come in.
    [[nodiscard]] bool isReplyOwed();

    /// Takes note of an input report, whose bytes are in InputPacketBuffer already.
    void PacketReceived();

    /// Ends the link for good: lets the unit go and makes a running exchange fail without a
    /// message. For a program that is about to end; the flags stay as they are.
    void close();

private:
    /// One request and what comes of it.
    struct Exchange
    {
        /// Abandoned: not sent, or waited for in vain, because its unit has gone.
        enum class Fate { Abandoned, Waiting, Answered, Refused, TimedOut };

        hid::DeviceRef unit; ///< the only one that may get the request
        hid::Report request;
        Fate fate = Fate::Abandoned;
        hid::Report reply{};
        QDeadlineTimer replyDue{}; ///< until then the reply may come in, in time or late
        bool isDoubtful = false;   ///< an earlier request's reply has come in instead of this one's
    };
    using ExchangeRef = std::shared_ptr<Exchange>;

    void carryOut(const ExchangeRef &exchange);
    [[nodiscard]] static bool send(Exchange &exchange, std::chrono::milliseconds replyDueIn);
    void askAgain();
    void end(Exchange::Fate fate);
    void abandonExchange();
    void letUnitGo();

    std::unique_ptr<hid::Manager> m_hidManager;
    hid::DeviceRef m_myDevice;
    /// Ticks while an exchange waits.
    QTimer m_poll;
    /// The exchange that waits for its reply; null when none does.
    ExchangeRef m_running;
    /// Requests that the unit may still answer, in the order in which they were sent and in which
    /// it answers them.
    std::deque<ExchangeRef> m_owed;
};

// The callbacks that the link registers. They reach the link through selfRef, because a callback
// may still be on its way when the link is gone.

void MyNewDeviceCallback(void *context, const hid::DeviceRef &device);
void MyRemovalCallback(void *context, const hid::DeviceRef &device);
void MyInputCallback(void *context, std::span<const std::uint8_t> report);

} // namespace kavelo
