#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The program's copy of the unit's settings. Every pedal has an output mode, a common record of 13
/// bytes and an additional block of 63 bytes. Only the mode PLURAL_SIMULTANEOUS_KEY_OUTPUT uses the
/// additional block.
namespace kavelo {

constexpr std::int32_t NUMBER_OF_COMMON_DATA = 13;     ///< bytes of one common record
constexpr std::int32_t ADDITIONAL_DATA_ONE_PEDAL = 63; ///< bytes of one additional block
constexpr std::int32_t NUMBER_OF_PSKO_OUTPUT = 10;     ///< greatest number of outputs in mode 9
constexpr int MaxPedals = 5;                           ///< number of rows of every setting array

// Output mode codes.
constexpr std::uint8_t SIMPLE_KEY_OUTPUT = 0;          ///< one key with modifiers
constexpr std::uint8_t SIMPLE_CLICK = 1;               ///< a click of one or more buttons
constexpr std::uint8_t SIMPLE_DOUBLE_CLICK = 2;        ///< a double click
constexpr std::uint8_t MODIFIER_PLUS_CLICK = 3;        ///< modifiers held with a click
constexpr std::uint8_t MODIFIER_PLUS_DOUBLE_CLICK = 4; ///< modifiers held with a double click
constexpr std::uint8_t CONTINUOUS_KEY_OUTPUT = 5;      ///< a repeated key
constexpr std::uint8_t POINTER_MOVE = 6;               ///< pointer movement
constexpr std::uint8_t WHEEL_ROTATION = 7;             ///< wheel rotation
constexpr std::uint8_t CONTINUOUS_CLICK = 8;           ///< a repeated click
constexpr std::uint8_t PLURAL_SIMULTANEOUS_KEY_OUTPUT =
    9;                                        ///< PSKO: up to 10 key chords in sequence
constexpr std::uint8_t OUTPUT_AT_CHANGE = 10; ///< outputs on depress and on release
constexpr std::size_t NumberOfModes = 11;     ///< the codes are consecutive

using CommonRecord = std::array<std::uint8_t, NUMBER_OF_COMMON_DATA>;
using AdditionalBlock = std::array<std::uint8_t, ADDITIONAL_DATA_ONE_PEDAL>;

// Modes and records are set by the main window when it reads the unit, by `applyFactorySetting` and
// by the dialogs. They are read by the description text, the dialogs and every sender of a record.
// Additional blocks are set only by `readAdditionalData`, and only for a pedal whose mode is
// PLURAL_SIMULTANEOUS_KEY_OUTPUT. The main window clears all three arrays when it takes another
// unit.
inline std::array<std::uint8_t, MaxPedals> OutputMode{};
inline std::array<CommonRecord, MaxPedals> CommonData{};
inline std::array<AdditionalBlock, MaxPedals> AdditionalData{};

/// The pedal that is being read, restored, shown or edited (0 to 4). Set by the main window when it
/// reads, restores or opens the Standard dialog, and by a dialog before it writes. The caller that
/// opens the Advanced dialog sets it first. IntoTwoCommonData() and IntoValue16() use the record of
/// this pedal.
inline int SelectedPedalNo = 0;

/// One output in mode 9: a modifier byte and six key usage IDs. Usage ID 0 means no key.
constexpr std::size_t PskoOutputSize = 7;
using PskoOutput = std::span<const std::uint8_t, PskoOutputSize>;

/// The fields of a mode 9 record, except its first output.
struct PskoSetting
{
    int onTime;          ///< time that each output is held, 0 to 4095 ms
    int timeBetween;     ///< pause between two outputs, 0 to 4095 ms
    int numberOfOutputs; ///< as stored in the record, 0 to 127
    bool repeatsSet;     ///< whether the whole set of outputs is repeated, or each output
    int numberOfRepeats; ///< 0 = until the pedal is released
};

/// Stores `value16` (0 to 65535) in the common record of the selected pedal: the high byte at index
/// `i` (0 to 11), the low byte after it.
void IntoTwoCommonData(int value16, int i);

/// The 16-bit value in the common record of the selected pedal whose high byte is at index `i` (0
/// to 11).
[[nodiscard]] std::uint16_t IntoValue16(int i);

/// The 16-bit value in `record` whose high byte is at index `i` (0 to 11).
[[nodiscard]] std::uint16_t value16In(const CommonRecord &record, int i);

/// Stores `value16` in `record` as IntoTwoCommonData() does.
void storeValue16(CommonRecord &record, int value16, int i);

/// Reads a mode 9 record.
[[nodiscard]] PskoSetting pskoSettingIn(const CommonRecord &record);

/// Output `n` (1 to `NUMBER_OF_PSKO_OUTPUT`) in mode 9. The first output is at the end of the
/// common record, the others are in the additional block. The result is a view of the argument.
[[nodiscard]] PskoOutput pskoOutputIn(const CommonRecord &record, const AdditionalBlock &additional,
                                      int n);

} // namespace kavelo
