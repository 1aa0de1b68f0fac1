#include "KeyUsage.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace kavelo {
namespace {

/// The records are what the user reads: whoever means to change one renews its checksum, which is
/// four digits.
constexpr QStringView Checksums =
    u"e84336e64baf7571f3b5090b5f61f466a20c58b20ed806ad50c7aa79fc135714017efbc0adaaeb2abd4047fe1194"
    u"ba93ecf91647402d48581e32e48cfac53806065f75ad0be076f8e6f34dc1011719497cc1f08a2de726836ff77d08"
    u"848d06770bc8338e7c07ed0c6cf1dbfe4351bfcbc186f8cc5c23764b6f93229b3b43112b08f38b3b92e3bff0a628"
    u"8c40482856530aa95f25903ae19e9300e78eb2b547a21a9e1d53ea1e749a89233fc03812e350f61470005ea0ca12"
    u"0e69be6f8a3cc27bdf58bdb3174838ebf066c25bd9b28b2dd5b798bf8167ab0fb2d7311f28c710bb0963230b3ad3"
    u"77dbd8ea24d4c980b6f6e706d4a0fc6ed59948b8cd369511695fab4b7e68524dd3af352087bda3ffac74861c9fc4"
    u"d2cccb14e17cf8a47b6c62b4cd75c4afdd77907f89a7a3cfba1739df20075bf6663ec30913050f1fb34a5ad242ad"
    u"165091cf2d5df927557e557e557e557e557e557e557e557e557e557e557e34974c374cc50929c4d8499e100d09d5"
    u"e992bd429e470cbfa240882891f0dcf8c520ef48acf1b419a075e2fcd14c8a1da69aa49a7884b62cf4a5fbfebb98"
    u"c71599b5e0d15ba3eb92a7cbd3a25a37a53865f3e69d3484ee60e5a1c254557e557e120bc9edbce85434ef53835e"
    u"fb182c264f2c1b6efeb5cc8f448b82ba";

TEST(KeyUsage, CutsTheRecordsUp)
{
    const QRegularExpression form(
        QStringLiteral("^(Level:(STANDARD|ADVANCED) )?Name:\\[(.+?)(\\] Explanation:(.+)|.)$"));
    ASSERT_EQ(Checksums.size(), 4 * (Max_UsageID + 1));
    for (int id = 0; id <= Max_UsageID; ++id) {
        const QString record = GetKeyContents(id);
        const QRegularExpressionMatch match = form.match(record);
        EXPECT_EQ(isStandardKey(id), match.captured(2) == QStringLiteral("STANDARD")) << id;
        EXPECT_EQ(GetKeyName(id), match.captured(3)) << id;
        EXPECT_EQ(GetKeyExplanation(id), match.captured(5)) << id;
        const auto sum = QStringLiteral("%1").arg(qChecksum(record.toUtf8()), 4, 16, QChar(u'0'));
        EXPECT_EQ(Checksums.mid(4 * id, 4), sum)
            << sum.toStdString() << " is " << id << ": " << record.toStdString();
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
