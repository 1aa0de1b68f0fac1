#pragma once

#include <QStringView>
#include <array>
#include <cstddef>

namespace kavelo {

constexpr std::size_t NumberOfKeyUsageRecords = 238;

/// The record text of every usage ID. A record is "Level:" and a word of eight characters, one
/// blank, "Name:[" name "]" and, where the usage has one, " Explanation:" and the explanation up to
/// the end; the mouse button usages have no level.
extern const std::array<QStringView, NumberOfKeyUsageRecords> KeyUsageRecords;

} // namespace kavelo
