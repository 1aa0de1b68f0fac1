#pragma once

namespace kavelo {

/// Writes the factory setting of a pedal (0 to 4) into its row of OutputMode and CommonData. Bytes
/// of the record that the setting does not use keep their values. For a pedal from 5 on nothing
/// changes.
void applyFactorySetting(int pedal);

} // namespace kavelo
