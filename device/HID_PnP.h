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

// State that the link shares with the rest of the program. The link never calls the windows: they
// poll these variables.

/// The link to which the device callbacks forward. Set and cleared by the link itself.
inline HID_PnP *selfRef = nullptr;
/// A unit is held. Set by the link, read by the main window, which enables the restore menu item.
inline bool isConnected = false;
/// The unit is present. Set by the link, read by the update loop.
inline bool DeviceDetected = false;
/// The main window has to read the unit anew. Set by the link when a unit arrives or goes. Cleared
/// by the update loop.
inline bool DeviceDetectedChanged = false;
/// The Standard dialog is open. Set by the main window, cleared by the dialog when it closes, read
/// by the link.
inline bool StandardSettingDialogOpen = false;
/// The open Standard dialog must close because its unit has gone. Set by the link, cleared by the
/// dialog when it closes.
inline bool CloseStandardSetting = false;
/// A report has arrived that was not due as a reply. Replies may therefore have been assigned to
/// the wrong requests. Set by the link, cleared by the main window before it reads the unit.
inline bool UnexpectedReply = false;

// Set while the callback of that name runs, so that it does not run again inside itself. Only the
// callbacks use these.
inline bool flag_MyNewDeviceCallback = false;
inline bool flag_MyRemovalCallback = false;

// State of the running exchange, set by the link only.

/// A request has been sent and its exchange has not finished. A one-way request leaves the flag
/// set.
inline bool Flag_send = false;
/// A report has arrived since the last request was sent. Also cleared when an exchange ends.
inline bool Flag_input = false;
/// The last exchange timed out.
inline bool Flag_timeout = false;
/// Number of ticks for which the running exchange has waited for its reply.
inline int Count_timeout = 0;

/// The device link. It finds the unit, follows its arrival and removal, and carries out one command
/// exchange at a time. It holds at most one unit. While it holds a unit it listens for removals,
/// otherwise for arrivals.
class HID_PnP : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HID_PnP)

public:
    /// Opens the HID manager and looks for a unit at once. Afterwards DeviceDetectedChanged is set,
    /// whether or not a unit was found.
    explicit HID_PnP(QObject *parent = nullptr);
    ~HID_PnP() override;

    [[nodiscard]] hid::Manager &hidManager() const { return *m_hidManager; }
    /// The held unit; null when there is none.
    [[nodiscard]] const hid::DeviceRef &myDevice() const { return m_myDevice; }

    /// Releases the held unit, if any, and listens for the next arrival.
    void DeviceRemoved();
    /// Holds the first matching device. Acts as DeviceRemoved() when there is none.
    void NewDeviceDetected();

    /// Exchanges one command with the unit. The caller has filled OutputPacketBuffer from byte 1
    /// on; the reply is in InputPacketBuffer afterwards. The request is sent when no other exchange
    /// runs and no late reply is due. The link then waits for the reply for ReplyTimeout. Both
    /// waits run the event loop, so any event may be handled inside this call, including another
    /// exchange.
    ///
    /// Returns true on failure: there is no unit, the unit goes before the request is sent, the
    /// send is refused, no reply arrives in time, another unit arrives, or close() is called. With
    /// `MessageOn` a refused send and a timeout are shown in a message box ("sending error",
    /// "timeout"); the other failures are not.
    bool Communicate(std::uint8_t CommunicationCommand, bool MessageOn);

    /// One tick of the running exchange. Only this function ends an exchange with its reply or with
    /// a timeout.
    void check_INPUT();

    /// Requests piece `DataNo` of the selected pedal's additional block. It waits before it sends,
    /// as Communicate() does, but it does not wait for the reply, which is not stored.
    void Communicate_AdditionalData();

    /// Handles one input report, whose bytes are already in InputPacketBuffer.
    void PacketReceived();

    /// Closes the link for good. The unit is released, and a running exchange fails without a
    /// message. The flags of the unit's coming and going keep their values. Called when the program
    /// is about to end.
    void close();

Q_SIGNALS:
    /// The unit has arrived or gone, and DeviceDetectedChanged is set.
    void unitChanged();

private:
    /// A request that has been sent, and its outcome.
    struct Exchange
    {
        enum class Outcome { Waiting, Answered, TimedOut, Abandoned };

        hid::DeviceRef unit; ///< the unit to which the request was sent
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
    /// Calls check_INPUT() at every tick while an exchange waits for its reply.
    QTimer m_poll{this};
    /// The exchange that waits for its reply; null when there is none.
    Exchange *m_running = nullptr;
    /// Until this deadline a reply may still arrive that no exchange waits for: a late reply, or
    /// the reply to a one-way request. A reply does not say which request it answers, so nothing is
    /// sent before that reply or the deadline.
    QDeadlineTimer m_replyOwed;
};

// The callbacks that the link registers. They forward to `selfRef` and do not use their context.

void MyNewDeviceCallback(void *context, const hid::DeviceRef &device);
void MyRemovalCallback(void *context, const hid::DeviceRef &device);
void MyInputCallback(void *context, std::span<const std::uint8_t> report);

} // namespace kavelo
