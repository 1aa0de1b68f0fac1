#pragma once

#include <QString>
#include <cstdint>

/// Names and explanations of the HID keyboard usages. In this file a character is an extended
/// grapheme cluster.
namespace kavelo {

constexpr std::int32_t Max_KeyUsageID = 101; ///< highest usage ID that the texts describe as a key
constexpr std::int32_t Max_UsageID = 237;    ///< highest usage ID that has a record

/// The record text of a usage (see KeyUsageRecords.h). "Error at GetKeyContentsJ()" for an ID
/// outside 0 to `Max_UsageID`.
[[nodiscard]] QString GetKeyContents(int UsageID);

/// The name of a usage; empty for an ID outside 0 to `Max_UsageID`.
[[nodiscard]] QString GetKeyName(int UsageID);

/// The explanation of a usage. Empty when the usage has none, and for an ID outside 0 to
/// `Max_UsageID`.
[[nodiscard]] QString GetKeyExplanation(int UsageID);

/// The position of the first `Keyword` in `SearchFor`, counted in characters from 0. -1 when it is
/// not found. An empty keyword is found at 0.
[[nodiscard]] int IndexOf(const QString &SearchFor, const QString &Keyword);

/// Whether the level of a usage is "STANDARD"; false for an ID without a record.
[[nodiscard]] bool isStandardKey(int UsageID);

} // namespace kavelo
