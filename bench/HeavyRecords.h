#pragma once

#include "PedalSetting.h"

#include <array>

namespace kavelo {

/// A record for each output mode that gives a long text: all lines, all modifiers, long names.
/// Usage 94 is a keypad key with an arrow in its name, usage 237 a mouse button usage.
constexpr auto HeavyRecords = std::to_array<CommonRecord>({
    {0xFF, 94},
    {7},
    {4, 255, 1, 255},
    {0xFF, 4},
    {0xFF, 4, 0, 255, 1, 255},
    {0xFF, 94, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {1, 255, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {255, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {4, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {255, 255, 255, 0x8A, 255, 255, 0xFF, 94, 94, 94, 94, 94, 94},
    {3, 0xFF, 94, 0xFF, 237},
});
static_assert(HeavyRecords.size() == NumberOfModes, "every mode needs a record");

} // namespace kavelo
