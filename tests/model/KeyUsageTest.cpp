#include "KeyUsage.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace kavelo {
namespace {

/// The checksum of all records. No other check notices a slip in a text that only the user reads.
constexpr quint16 Checksum = 31978;

TEST(KeyUsage, CutsTheRecordsUp)
{
    const QRegularExpression form(
        QStringLiteral("^(Level:(STANDARD|ADVANCED) )?Name:\\[(.+?)(\\] Explanation:(.+)|.)$"));
    QByteArray records;
    for (int id = 0; id <= Max_UsageID; ++id) {
        const QString record = GetKeyContents(id);
        const QRegularExpressionMatch match = form.match(record);
        EXPECT_EQ(isStandardKey(id), match.captured(2) == QStringLiteral("STANDARD")) << id;
        EXPECT_EQ(GetKeyName(id), match.captured(3)) << id;
        EXPECT_EQ(GetKeyExplanation(id), match.captured(5)) << id;
        records += record.toUtf8();
    }
    EXPECT_EQ(qChecksum(records), Checksum) << "a changed or new record changes the checksum";
    EXPECT_EQ(GetKeyName(144), QStringLiteral("Keyboard LANG 1]"));
    for (const int id : {-1, Max_UsageID + 1}) {
        EXPECT_EQ(GetKeyContents(id), QStringLiteral("Error at GetKeyContentsJ()")) << id;
        EXPECT_EQ(GetKeyName(id) + GetKeyExplanation(id), QString()) << id;
        EXPECT_FALSE(isStandardKey(id)) << id;
    }
}

TEST(KeyUsage, CountsPositionsInCharacters)
{
    // An e with a combining accent, x and e. An emoji that is joined from two emojis.
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
