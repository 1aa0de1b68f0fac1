#include "AdditionalDataTransfer.h"

#include "HID_PnP.h"
#include "Protocol.h"

#include <algorithm>

namespace kavelo {

bool readAdditionalData(HID_PnP &link, int pedal, bool MessageOn)
{
    AdditionalBlock &block = AdditionalData.at(static_cast<std::size_t>(pedal));
    int first = 0;
    for (int piece = 0; first < ADDITIONAL_DATA_ONE_PEDAL; ++piece) {
        const int size = std::min(ADDITIONAL_DATA_ONE_TIME, ADDITIONAL_DATA_ONE_PEDAL - first);
        OutputPacketBuffer[1] = static_cast<std::uint8_t>(pedal);
        OutputPacketBuffer[2] = static_cast<std::uint8_t>(piece);
        if (link.Communicate(GET_ADDITIONAL_DATA, MessageOn)) {
            return true;
        }
        std::copy_n(InputPacketBuffer.begin() + 2, size, block.begin() + first);
        first += size;
    }
    return false;
}

} // namespace kavelo
