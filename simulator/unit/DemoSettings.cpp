#include "DemoSettings.h"

#include "ModifierName.h"

namespace kavelo {
namespace {

/// High byte of a 16-bit value, for the byte before its low byte.
constexpr std::uint8_t high(int value16)
{
    return static_cast<std::uint8_t>(value16 >> 8);
}

constexpr std::uint8_t low(int value16)
{
    return static_cast<std::uint8_t>(value16 & 0xFF);
}

/// Copies a whole text and pastes it elsewhere: Ctrl+A, Ctrl+C, a + b + c, Shift+Ctrl+V; each
/// held 300 ms with 80 ms between, the whole set once.
PedalMemory keySequence()
{
    constexpr int OnTime = 300;
    constexpr int TimeBetween = 80;
    constexpr std::uint8_t RepeatWholeSet = 0x80;
    constexpr std::uint8_t Outputs = 4;
    return {
        .mode = PLURAL_SIMULTANEOUS_KEY_OUTPUT,
        .record = {low(OnTime), low(TimeBetween), (high(OnTime) << 4) | high(TimeBetween),
                   RepeatWholeSet | Outputs, 0, 1, LeftControl, 0x04},
        // clang-format off
        .additional = {LeftControl, 0x06, 0, 0, 0, 0, 0,
                       0, 0x04, 0x05, 0x06, 0, 0, 0,
                       LeftShift | LeftControl, 0x19, 0, 0, 0, 0, 0},
        // clang-format on
    };
}

/// Ctrl+S.
PedalMemory save()
{
    return {.mode = SIMPLE_KEY_OUTPUT, .record = {LeftControl, 0x16}};
}

/// To the right and down at 250 dots a second until the pedal is released, getting faster.
PedalMemory pointerMovement()
{
    constexpr int Speed = 250;
    constexpr int AccelerationIndex = 3;
    constexpr int Slowness = 333; // 1000 / AccelerationIndex
    return {.mode = POINTER_MOVE,
            .record = {1, 1, high(Speed), low(Speed), high(Slowness), low(Slowness), 1, 0, 0,
                       high(Speed), low(Speed), high(AccelerationIndex), low(AccelerationIndex)}};
}

/// Holds the left button down while the pedal is, for dragging.
PedalMemory drag()
{
    constexpr std::uint8_t OnDepressAndRelease = 0b11;
    constexpr std::uint8_t PressLeftButton = 232;
    constexpr std::uint8_t ReleaseLeftButton = 233;
    return {.mode = OUTPUT_AT_CHANGE,
            .record = {OnDepressAndRelease, 0, PressLeftButton, 0, ReleaseLeftButton}};
}

/// Twelve rotations backward, 4 a second.
PedalMemory scrollDown()
{
    return {.mode = WHEEL_ROTATION, .record = {255, 0, 0, 0, 0, 0, 0, 12, 0, 4, 0, 1}};
}

} // namespace

std::array<PedalMemory, MaxPedals> demoSettings()
{
    return std::to_array({keySequence(), save(), drag(), pointerMovement(), scrollDown()});
}

} // namespace kavelo
