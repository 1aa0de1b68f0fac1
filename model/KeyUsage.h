#pragma once

#include <QString>
#include <cstdint>

/// What the HID keyboard usages are called. Characters are extended grapheme clusters throughout.
namespace kavelo {

constexpr std::int32_t Max_KeyUsageID = 101; ///< highest usage ID that is described as a key
constexpr std::int32_t Max_UsageID = 237;    ///< highest usage ID that has a record

/// The record text of a usage (see KeyUsageRecords.h); "Error at GetKeyContentsJ()" for an ID
/// outside 0 to `Max_UsageID`.
[[nodiscard]] QString GetKeyContents(int UsageID);

/// The name of a usage; empty for an ID outside 0 to `Max_UsageID`.
[[nodiscard]] QString GetKeyName(int UsageID);

/// The explanation of a usage; empty where it has none and for an ID outside 0 to `Max_UsageID`.
[[nodiscard]] QString GetKeyExplanation(int UsageID);

/// The position in characters, from 0, of the first `Keyword` in `SearchFor`; -1 when there is
/// none. An empty keyword is found at 0.
[[nodiscard]] int IndexOf(const QString &SearchFor, const QString &Keyword);

/// Whether the level of a usage is "STANDARD"; false for an ID without a record.
[[nodiscard]] bool isStandardKey(int UsageID);

} // namespace kavelo
