#include "UnitRun.h"

#include "HID_PnP.h"
#include "Protocol.h"

namespace kavelo {

UnitRun::UnitRun(HID_PnP &link, const hid::DeviceRef &shownUnit, bool MessageOn)
    : m_link(link)
    , m_shownUnit(shownUnit)
    , m_unit(shownUnit)
    , m_messageOn(MessageOn)
{
}

bool UnitRun::mustStop() const
{
    return m_link.myDevice() != m_unit;
}

bool UnitRun::exchange(std::uint8_t command)
{
    const bool hasFailed = m_link.Communicate(command, m_messageOn);
    m_hasFailed = m_hasFailed || hasFailed;
    return hasFailed;
}

bool UnitRun::ask(std::uint8_t command, int limit)
{
    if (exchange(command) || mustStop()) {
        return false;
    }
    const std::uint8_t first = InputPacketBuffer[2];
    if (first < limit) {
        return true;
    }
    if (exchange(command) || mustStop()) {
        return false;
    }
    const std::uint8_t second = InputPacketBuffer[2];
    if (second >= limit && second != first) {
        noteFailure();
        return false;
    }
    return true;
}

} // namespace kavelo
