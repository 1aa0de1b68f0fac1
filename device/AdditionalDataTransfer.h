#pragma once

namespace kavelo {

class HID_PnP;

/// Reads the additional block of a pedal (0 to 4) into its row of AdditionalData. The block takes
/// five exchanges, one for each of the pieces 0 to 4. Returns true on failure: the first failed
/// exchange ends the transfer, and the pieces read before it stay stored.
bool readAdditionalData(HID_PnP &link, int pedal, bool MessageOn);

} // namespace kavelo
