#pragma once

#include <QString>

namespace kavelo {

/// Describes the setting of a pedal (0 to 4) from its rows of the setting arrays. The text consists
/// of lines separated by "\r\n", and the first line begins with "[Set function] ". The text for an
/// unknown output mode is "default". The text for a pedal outside 0 to 4 is empty.
[[nodiscard]] QString PedalDescription(int pedal);

} // namespace kavelo
