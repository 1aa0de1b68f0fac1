#include "KeyUsage.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <vector>

namespace kavelo {
namespace {

TEST(KeyUsage, NamesAndExplainsUsages)
{
    struct Row
    {
        int usageId;
        const char *name;
        const char *explanation = "";
    };
    // clang-format off
    const std::vector<Row> rows = {
        {-1, ""},
        {0, "none", "Output nothing"},
        {4, "a", "Shift and this key will be an uppercase A"},
        {29, "z", "Shift and this key will be an uppercase Z"},
        {30, "1", "Shift and this key will be !"},
        {40, "Enter (Return)"},
        {47, "[", "Shift and this key will be {"},
        {48, "]", "Shift and this key will be }"},
        {49, "\\", "Shift and this key will be |"},
        {52, "'", "Shift and this key will be \""},
        {57, "Caps Lock", "Used with Shift"},
        {69, "F12"},
        {79, "→", "Right arrow"},
        {90, "key pad ↓(Down arrow)", "Key on the keypad (numeric keypad) 2 with NumLock on"},
        {101, "Application", "Same as right mouse click"},
        {115, "F24"},
        {144, "Keyboard LANG 1]"},
        {165, "---", "Reserved"},
        {175, "---", "Reserved"},
        {176, "key pad 00"},
        {202, "key pad ||"},
        {221, "key pad Hexadecimal"},
        {222, "---", "Reserved"},
        {224, "(Left)Control"},
        {231, "Right Commandキー(GUI)"},
        {232, "Left Click Push Button", "Starting Left Click"},
        {237, "Middle Click Release Button", "Finishing Middle Click"},
        {238, ""},
    };
    // clang-format on
    for (const Row &row : rows) {
        EXPECT_EQ(GetKeyName(row.usageId).toStdString(), row.name) << row.usageId;
        EXPECT_EQ(GetKeyExplanation(row.usageId).toStdString(), row.explanation) << row.usageId;
    }
}

TEST(KeyUsage, HasWellFormedRecords)
{
    const QRegularExpression form(QStringLiteral(
        "^(Level:(STANDARD|ADVANCED) )?Name:\\[([^ ].*)\\];?( Explanation:([A-Z].*[^ ]))?$"));
    int explained = 0;
    for (int id = 0; id <= Max_UsageID; ++id) {
        const QString record = GetKeyContents(id);
        const QRegularExpressionMatch match = form.match(record);
        EXPECT_EQ(record.startsWith(u"Level:"), id < 232) << id;
        EXPECT_EQ(match.captured(3) + QString(id == 144 ? 1 : 0, u']'), GetKeyName(id)) << id;
        EXPECT_EQ(match.captured(5), GetKeyExplanation(id)) << id;
        explained += match.hasCaptured(5) ? 1 : 0;
    }
    EXPECT_EQ(explained, 92);
    for (const int id : {-1, Max_UsageID + 1}) {
        EXPECT_EQ(GetKeyContents(id), QStringLiteral("Error at GetKeyContentsJ()")) << id;
    }
}

TEST(KeyUsage, CallsTheKeysOfTheStandardDialogStandard)
{
    for (int id = -1; id <= Max_UsageID + 1; ++id) {
        const bool expected = (id >= 4 && id <= 48) || (id >= 50 && id <= 56) ||
                              (id >= 58 && id <= 69) || (id >= 73 && id <= 99);
        EXPECT_EQ(isStandardKey(id), expected) << id;
    }
}

TEST(KeyUsage, CountsPositionsInCharacters)
{
    struct Row
    {
        const char *text;
        const char *keyword;
        int position;
    };
    // An e under an accent, x, e; and an emoji joined of two.
    constexpr const char *Accented = "e\u0301xe";
    constexpr const char *Family = "\U0001F468\u200D\U0001F467 → キー";
    // clang-format off
    const std::vector<Row> rows = {
        {"aab", "ab", 1},
        {"ab", "abc", -1},
        {"ab", "", 0},
        {"", "", 0},
        {"", "a", -1},
        {"a\r\nb", "\n", -1},
        {"a\r\nb", "b", 2},
        {Accented, "e", 2},
        {Accented, "x", 1},
        {Accented, "e\u0301", 0},
        {Accented, "ex", -1},
        {Family, "\U0001F467", -1},
        {Family, "→", 2},
        {Family, "キ", 4},
    };
    // clang-format on
    for (const Row &row : rows) {
        EXPECT_EQ(IndexOf(QString::fromUtf8(row.text), QString::fromUtf8(row.keyword)),
                  row.position)
            << row.text << " / " << row.keyword;
    }
}

} // namespace
} // namespace kavelo
