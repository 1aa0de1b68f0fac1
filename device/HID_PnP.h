#pragma once

#include "Hid.h"
#include "Protocol.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

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
/// A report has come in that nobody waits for, so replies may have been taken for one another's.
/// Set by the link, cleared by the main window before it reads, writes or restores.
inline bool UnexpectedReply = false;

// Guards of the callbacks against re-entry; set and read by the callbacks only.
inline bool flag_MyNewDeviceCallback = false;
inline bool flag_MyRemovalCallback = false;

// State of the running exchange, set by the link only.

/// A request is out and its exchange is not finished. A one-way request leaves it set.
inline bool Flag_send = false;
/// A report has come in since the last request was sent.
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
    /// on; the reply is in InputPacketBuffer afterwards. The request is sent once no other exchange
    /// runs and no late reply is due. The reply is waited for during 30 ticks of 0.1 s. All waiting
    /// runs the event loop, inside of which anything may happen, also another exchange.
    ///
    /// Returns true on failure: no unit, the send was refused ("sending error"), no reply in time
    /// ("timeout"), or the unit has changed or the link was closed meanwhile. With `MessageOn` a
    /// refused send and a timeout are shown in a message box.
    bool Communicate(std::uint8_t CommunicationCommand, bool MessageOn);

    /// One tick of the running exchange; the only place that finds its reply or its timeout.
    void check_INPUT();

    /// Asks for a piece (`DataNo`) of the selected pedal's additional block without waiting for
    /// the reply, which nothing stores. Waits before the send as an exchange does.
    void Communicate_AdditionalData();

    /// Takes note of an input report, whose bytes are in InputPacketBuffer already.
    void PacketReceived();

    /// Ends the link for good: lets the unit go and makes a running exchange fail without a
    /// message. For a program that is about to end; the flags stay as they are.
    void close();

private:
    /// A request that has been sent and what comes of it.
    struct Exchange
    {
        enum class Outcome { Waiting, Answered, TimedOut, Abandoned };

        hid::DeviceRef unit; ///< that got the request
        Outcome outcome = Outcome::Waiting;
        hid::Report reply{};
    };

    [[nodiscard]] bool isReplyOwed() const { return !m_replyOwed.hasExpired(); }
    [[nodiscard]] bool waitForTurn();
    [[nodiscard]] bool send(const hid::Report &request);
    void waitForReply(Exchange &exchange);
    void end(Exchange::Outcome outcome);
    void abandonExchange();
    void letUnitGo();

    std::unique_ptr<hid::Manager> m_hidManager;
    hid::DeviceRef m_myDevice;
    /// Ticks while an exchange waits for its reply.
    QTimer m_poll{this};
    /// The exchange that waits for its reply; null when none does.
    Exchange *m_running = nullptr;
    /// Until then the reply to a request that nobody waits for any more may come in. Replies name
    /// no request, so nothing is sent before.
    QDeadlineTimer m_replyOwed;
};

// The callbacks that the link registers. They reach the link through selfRef, because a callback
// may still be on its way when the link is gone.

void MyNewDeviceCallback(void *context, const hid::DeviceRef &device);
void MyRemovalCallback(void *context, const hid::DeviceRef &device);
void MyInputCallback(void *context, std::span<const std::uint8_t> report);

} // namespace kavelo
