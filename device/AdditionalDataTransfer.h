#pragma once

namespace kavelo {

class HID_PnP;

/// Reads the additional block of a pedal, 0 to 4, into its row of AdditionalData: five exchanges,
/// pieces 0 to 4. Returns true on failure, as soon as one exchange fails; the pieces stored before
/// stay stored.
bool readAdditionalData(HID_PnP &link, int pedal, bool MessageOn);

} // namespace kavelo
