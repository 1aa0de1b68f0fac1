#pragma once

#include <cmath>

/// The logarithmic scale of the sliders: a position is 1000 times the decimal logarithm of the
/// index that it stands for. Positions 0 to 3000 give indices 1 to 1000.
namespace kavelo {

/// The index nearest to a position, measured along the scale. A tie goes to the larger index.
[[nodiscard]] inline int indexAtThousandLog(int position)
{
    const int below = static_cast<int>(std::pow(10.0, position / 1000.0));
    const double up = 1000 * std::log10(below + 1) - position;
    const double down = position - 1000 * std::log10(below);
    return up <= down ? below + 1 : below;
}

/// A position for an index of at least 0. It lies half an index above the index's own place, so it
/// may stand for the next index already: index 1 is at 176, and 176 stands for 2.
[[nodiscard]] inline int thousandLogOfIndex(int index)
{
    return static_cast<int>(1000 * std::log10(index + 0.5));
}

} // namespace kavelo
