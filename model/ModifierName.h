#pragma once

#include <QString>
#include <cstdint>

namespace kavelo {

/// The bits of a modifier byte, in the order of the HID keyboard report.
enum ModifierBit : std::uint8_t {
    LeftControl = 0x01,
    LeftShift = 0x02,
    LeftOption = 0x04,
    LeftCommand = 0x08,
    RightControl = 0x10,
    RightShift = 0x20,
    RightOption = 0x40,
    RightCommand = 0x80,
};

/// The names of all modifiers whose bit is set, joined by "+" in bit order. Empty when no bit is
/// set.
[[nodiscard]] QString GetModifierName(std::uint8_t ModifierByte);

} // namespace kavelo
