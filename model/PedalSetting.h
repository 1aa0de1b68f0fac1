#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The unit's settings as the program holds them: for every pedal an output mode, a common record
/// of 13 bytes and a block of 63 bytes that only the multiple simultaneous key output uses.
namespace kavelo {

constexpr std::int32_t NUMBER_OF_COMMON_DATA = 13;     ///< bytes of one common record
constexpr std::int32_t ADDITIONAL_DATA_ONE_PEDAL = 63; ///< bytes of one additional block
constexpr std::int32_t NUMBER_OF_PSKO_OUTPUT = 10;     ///< most outputs of one mode 9 setting
constexpr int MaxPedals = 5;                           ///< rows of every setting array

// Output mode codes.
constexpr std::uint8_t SIMPLE_KEY_OUTPUT = 0;              ///< one key with modifiers
constexpr std::uint8_t SIMPLE_CLICK = 1;                   ///< a click of one or more buttons
constexpr std::uint8_t SIMPLE_DOUBLE_CLICK = 2;            ///< a double click
constexpr std::uint8_t MODIFIER_PLUS_CLICK = 3;            ///< modifiers held with a click
constexpr std::uint8_t MODIFIER_PLUS_DOUBLE_CLICK = 4;     ///< modifiers held with a double click
constexpr std::uint8_t CONTINUOUS_KEY_OUTPUT = 5;          ///< a repeated key
constexpr std::uint8_t POINTER_MOVE = 6;                   ///< pointer movement
constexpr std::uint8_t WHEEL_ROTATION = 7;                 ///< wheel rotation
constexpr std::uint8_t CONTINUOUS_CLICK = 8;               ///< a repeated click
constexpr std::uint8_t PLURAL_SIMULTANEOUS_KEY_OUTPUT = 9; ///< up to 10 key chords in sequence
constexpr std::uint8_t OUTPUT_AT_CHANGE = 10;              ///< outputs on depress and on release
constexpr std::size_t NumberOfModes = 11;                  ///< the codes are consecutive

using CommonRecord = std::array<std::uint8_t, NUMBER_OF_COMMON_DATA>;
using AdditionalBlock = std::array<std::uint8_t, ADDITIONAL_DATA_ONE_PEDAL>;

// A mode and a record are set by the main window when it reads them from the unit, by
// `applyFactorySetting` and by the dialogs that edit them; read by the description text, the
// dialogs and whoever sends a record. An additional block is only ever read from the unit, by
// `readAdditionalData`, and only while the pedal's mode is PLURAL_SIMULTANEOUS_KEY_OUTPUT.
inline std::array<std::uint8_t, MaxPedals> OutputMode{};
inline std::array<CommonRecord, MaxPedals> CommonData{};
inline std::array<AdditionalBlock, MaxPedals> AdditionalData{};

/// The pedal being read, restored, shown or edited, 0 to 4. Set by the main window when it reads,
/// restores or opens the Standard dialog, and by a dialog before it writes; whoever opens the
/// Advanced dialog sets it beforehand. IntoTwoCommonData() and IntoValue16() work on its record.
inline int SelectedPedalNo = 0;

/// One output of a mode 9 setting: a modifier byte and six key usage IDs (0 = no key there).
constexpr std::size_t PskoOutputSize = 7;
using PskoOutput = std::span<const std::uint8_t, PskoOutputSize>;

/// What a mode 9 record says beside its first output.
struct PskoSetting
{
    int onTime;          ///< how long each output is held, 0 to 4095 ms
    int timeBetween;     ///< pause between two outputs, 0 to 4095 ms
    int numberOfOutputs; ///< as the record has it, 0 to 127
    bool repeatsSet;     ///< a repetition is the whole set of outputs, not one output
    int numberOfRepeats; ///< 0 = until the pedal is released
};

/// Stores `value16`, 0 to 65535, into the selected pedal's common record: the high byte at `i`
/// (0 to 11), the low byte behind it.
void IntoTwoCommonData(int value16, int i);

/// The 16-bit value whose high byte is byte `i` (0 to 11) of the selected pedal's common record.
[[nodiscard]] std::uint16_t IntoValue16(int i);

/// The 16-bit value whose high byte is byte `i` (0 to 11) of a common record.
[[nodiscard]] std::uint16_t value16In(const CommonRecord &record, int i);

/// Reads a mode 9 record.
[[nodiscard]] PskoSetting pskoSettingIn(const CommonRecord &record);

/// Output `n`, 1 to `NUMBER_OF_PSKO_OUTPUT`, of a mode 9 setting: the first one ends the common
/// record, the others fill the additional block. A view into the two.
[[nodiscard]] PskoOutput pskoOutputIn(const CommonRecord &record, const AdditionalBlock &additional,
                                      int n);

} // namespace kavelo
