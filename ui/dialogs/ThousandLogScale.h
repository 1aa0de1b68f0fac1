#pragma once

#include <cmath>

/// The logarithmic scale of the sliders. A position is 1000 times the decimal logarithm of its
/// index. Positions 0 to 3000 stand for the indices 1 to 1000.
namespace kavelo {

/// The index that is nearest to a position on the scale. Of two equally near indices the larger
/// one.
[[nodiscard]] inline int indexAtThousandLog(int position)
{
    const int below = static_cast<int>(std::pow(10.0, position / 1000.0));
    const double up = 1000 * std::log10(below + 1) - position;
    const double down = position - 1000 * std::log10(below);
    return up <= down ? below + 1 : below;
}

/// A position for an index of 0 or more. It is calculated for the index plus one half, so it may
/// stand for the next index: index 1 has position 176, which stands for index 2.
[[nodiscard]] inline int thousandLogOfIndex(int index)
{
    return static_cast<int>(1000 * std::log10(index + 0.5));
}

} // namespace kavelo
