#include "KeyUsage.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <array>
#include <tuple>
#include <vector>

namespace kavelo {
namespace {

/// The records are what the user reads: whoever means to change one renews its checksum.
// clang-format off
constexpr auto Checksums = std::to_array<quint16>({
    59459, 14054, 19375, 30065, 62389, 2315, 24417, 62566, 41484, 22706, 3800, 1709, 20679,
    43641, 64531, 22292, 382, 64448, 44458, 60202, 48448, 18430, 4500, 47763, 60665, 5703,
    16429, 18520, 7730, 58508, 64197, 14342, 1631, 30125, 3040, 30456, 59123, 19905, 279,
    6473, 31937, 61578, 11751, 9859, 28663, 32008, 33933, 1655, 3016, 13198, 31751, 60684,
    27889, 56318, 17233, 49099, 49542, 63692, 23587, 30283, 28563, 8859, 15171, 4395, 2291,
    35643, 37603, 49136, 42536, 35904, 18472, 22099, 2729, 24357, 36922, 57758, 37632, 59278,
    45749, 18338, 6814, 7507, 59934, 29850, 35107, 16320, 14354, 58192, 62996, 28672, 24224,
    51730, 3689, 48751, 35388, 49787, 57176, 48563, 5960, 14571, 61542, 49755, 55730, 35629,
    54711, 39103, 33127, 43791, 45783, 12575, 10439, 4283, 2403, 8971, 15059, 30683, 55530,
    9428, 51584, 46838, 59142, 54432, 64622, 54681, 18616, 52534, 38161, 26975, 43851, 32360,
    21069, 54191, 13600, 34749, 41983, 44148, 34332, 40900, 53964, 51988, 57724, 63652, 31596,
    25268, 52597, 50351, 56695, 36991, 35239, 41935, 47639, 14815, 8199, 23542, 26174, 49929,
    4869, 3871, 45898, 23250, 17069, 5712, 37327, 11613, 63783, 21886, 21886, 21886, 21886,
    21886, 21886, 21886, 21886, 21886, 21886, 21886, 13463, 19511, 19653, 2345, 50392, 18846,
    4109, 2517, 59794, 48450, 40519, 3263, 41536, 34856, 37360, 56568, 50464, 61256, 44273,
    46105, 41077, 58108, 53580, 35357, 42650, 42138, 30852, 46636, 62629, 64510, 48024, 50965,
    39349, 57553, 23459, 60306, 42955, 54178, 23095, 42296, 26099, 59037, 13444, 61024, 58785,
    49748, 21886, 21886, 4619, 51693, 48360, 21556, 61267, 33630, 64280, 11302, 20268, 7022,
    65205, 52367, 17547, 33466,
});
// clang-format on

TEST(KeyUsage, CutsTheRecordsUp)
{
    const QRegularExpression form(
        QStringLiteral("^(Level:(STANDARD|ADVANCED) )?Name:\\[(.+?)(\\] Explanation:(.+)|.)$"));
    ASSERT_EQ(Checksums.size(), std::size_t(Max_UsageID) + 1);
    for (int id = 0; id <= Max_UsageID; ++id) {
        const QString record = GetKeyContents(id);
        const QRegularExpressionMatch match = form.match(record);
        EXPECT_EQ(isStandardKey(id), match.captured(2) == QStringLiteral("STANDARD")) << id;
        EXPECT_EQ(GetKeyName(id), match.captured(3)) << id;
        EXPECT_EQ(GetKeyExplanation(id), match.captured(5)) << id;
        EXPECT_EQ(qChecksum(record.toUtf8()), Checksums.at(std::size_t(id)))
            << id << ": " << record.toStdString();
    }
    EXPECT_EQ(GetKeyName(144), QStringLiteral("Keyboard LANG 1]"));
    for (const int id : {-1, Max_UsageID + 1}) {
        EXPECT_EQ(GetKeyContents(id), QStringLiteral("Error at GetKeyContentsJ()")) << id;
        EXPECT_EQ(GetKeyName(id) + GetKeyExplanation(id), QString()) << id;
        EXPECT_FALSE(isStandardKey(id)) << id;
    }
}

TEST(KeyUsage, CountsPositionsInCharacters)
{
    // An e under an accent, x, e; and an emoji joined of two.
    constexpr const char *Accented = "e\u0301xe";
    constexpr const char *Family = "\U0001F468\u200D\U0001F467 → キー";
    // clang-format off
    const std::vector<std::tuple<const char *, const char *, int>> rows = {
        {"aab", "ab", 1}, {"ab", "abc", -1}, {"ab", "", 0}, {"", "", 0}, {"", "a", -1},
        {"a\r\nb", "\n", -1}, {"a\r\nb", "b", 2},
        {Accented, "e", 2}, {Accented, "x", 1}, {Accented, "e\u0301", 0}, {Accented, "ex", -1},
        {Family, "\U0001F467", -1}, {Family, "→", 2}, {Family, "キ", 4},
    };
    // clang-format on
    for (const auto &[text, keyword, position] : rows) {
        EXPECT_EQ(IndexOf(QString::fromUtf8(text), QString::fromUtf8(keyword)), position)
            << text << " / " << keyword;
    }
}

} // namespace
} // namespace kavelo
