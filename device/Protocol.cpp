#include "Protocol.h"

#include <algorithm>

namespace kavelo {

void fillSetOutputModeAndData(int pedal)
{
    const auto row = static_cast<std::size_t>(pedal);
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(pedal);
    OutputPacketBuffer[2] = OutputMode.at(row);
    std::ranges::copy(CommonData.at(row), OutputPacketBuffer.begin() + 3);
}

void fillSetParameters()
{
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(CHATTERING_SETTLING_TIME);
    OutputPacketBuffer[2] = static_cast<std::uint8_t>(MODIFIER_PRECEDING_TIME);
    OutputPacketBuffer[3] = static_cast<std::uint8_t>(DOUBLE_CLICK_ON_TIME);
    OutputPacketBuffer[4] = static_cast<std::uint8_t>(DOUBLE_CLICK_OFF_TIME);
}

} // namespace kavelo
