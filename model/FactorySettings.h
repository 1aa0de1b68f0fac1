#pragma once

namespace kavelo {

/// Writes the factory setting of a pedal into its row of OutputMode and CommonData. The record's
/// other bytes, and every row from 5 on, stay as they are.
void applyFactorySetting(int pedal);

} // namespace kavelo
