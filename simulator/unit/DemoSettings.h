#pragma once

#include "SimulatedUnit.h"

#include <array>

namespace kavelo {

/// Settings for five pedals in five different output modes.
[[nodiscard]] std::array<PedalMemory, MaxPedals> demoSettings();

} // namespace kavelo
