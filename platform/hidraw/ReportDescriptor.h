#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kavelo::hid {

/// The usage pages of the top-level application collections of a HID report descriptor, in the
/// descriptor's order. Takes any bytes of any length: what follows a truncated item is not looked
/// at, and a descriptor that says nothing yields no page.
[[nodiscard]] std::vector<std::uint16_t>
applicationUsagePages(std::span<const std::uint8_t> descriptor);

} // namespace kavelo::hid
