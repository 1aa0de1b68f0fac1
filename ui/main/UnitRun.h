#pragma once

#include "Hid.h"

#include <cstdint>

namespace kavelo {

class HID_PnP;

/// One read, write or restore of the main window. It belongs to the unit that the window shows when
/// it begins. Its waits run the event loop, so that unit may go and another one may be read inside
/// them.
class UnitRun
{
public:
    /// `shownUnit` is the main window's variable; this object keeps a reference to it. With
    /// `MessageOn` a failed exchange is shown in a message box.
    UnitRun(HID_PnP &link, const hid::DeviceRef &shownUnit, bool MessageOn);

    /// Whether the unit has gone. The run must then neither read nor write any further.
    [[nodiscard]] bool mustStop() const;
    /// Whether the window has turned to another unit, or to none. The run must then leave the
    /// window and the setting arrays alone.
    [[nodiscard]] bool isOvertaken() const { return m_shownUnit != m_unit; }

    [[nodiscard]] bool MessageOn() const { return m_messageOn; }
    /// Whether something has gone wrong, so that the window may show what the unit does not hold.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }
    void noteFailure() { m_hasFailed = true; }

    /// Exchanges one command. Returns true on failure, as HID_PnP::Communicate() does.
    bool exchange(std::uint8_t command);
    /// Asks for a number (reply byte 2) that must be below `limit`. A number that is not may be
    /// from the reply to another request, so it is believed only when it comes twice in a row.
    /// Returns false when there is no reply to believe.
    bool ask(std::uint8_t command, int limit);

private:
    HID_PnP &m_link;
    const hid::DeviceRef &m_shownUnit;
    const hid::DeviceRef m_unit;
    const bool m_messageOn;
    bool m_hasFailed = false;
};

} // namespace kavelo
