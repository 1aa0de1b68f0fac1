#pragma once

#include "KeyUsage.h"

#include <QStringView>
#include <array>
#include <cstddef>

namespace kavelo {

constexpr std::size_t NumberOfKeyUsageRecords = Max_UsageID + 1;

/// The record text of every usage ID. A record consists of "Level:" and a word of eight characters,
/// a space, "Name:[", the name and "]". When the usage has an explanation, " Explanation:" and the
/// explanation follow up to the end. The records of the mouse button usages have no level.
extern const std::array<QStringView, NumberOfKeyUsageRecords> KeyUsageRecords;

} // namespace kavelo
