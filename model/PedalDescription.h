#pragma once

#include <QString>

namespace kavelo {

/// What a pedal, 0 to 4, is set to do, from its rows of the setting arrays: lines separated by
/// "\r\n", the first one beginning "[Set function] ". An output mode that is none of the modes is
/// described as "default", a pedal outside 0 to 4 by an empty text.
[[nodiscard]] QString PedalDescription(int pedal);

} // namespace kavelo
