#pragma once

#include "SimulatedUnit.h"

#include <array>

namespace kavelo {

/// Five pedals in five different output modes: what a unit looks like whose owner made use of it.
[[nodiscard]] std::array<PedalMemory, MaxPedals> demoSettings();

} // namespace kavelo
