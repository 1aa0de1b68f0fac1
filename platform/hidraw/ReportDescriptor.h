#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kavelo::hid {

/// The usage pages of the top-level application collections of a HID report descriptor, in the
/// order of the descriptor. Any bytes are accepted: parsing stops at a truncated item, and a
/// descriptor without application collections yields no usage page.
[[nodiscard]] std::vector<std::uint16_t>
applicationUsagePages(std::span<const std::uint8_t> descriptor);

} // namespace kavelo::hid
