#include "KeyUsage.h"

#include "ModelFixture.h"

#include <QRegularExpression>

namespace kavelo {
namespace {

TEST(KeyUsage, NamesAndExplainsUsages)
{
    struct Row
    {
        int usageId;
        QString name;
        QString explanation;
    };
    const QString shift = QStringLiteral("Shift and this key will be ");
    const QString keypad = QStringLiteral("Key on the keypad (numeric keypad)");
    const std::vector<Row> rows = {
        {0, QStringLiteral("none"), QStringLiteral("Output nothing")},
        {3, QStringLiteral("Error Undefined"), {}},
        {4, QStringLiteral("a"), shift + QStringLiteral("an uppercase A")},
        {29, QStringLiteral("z"), shift + QStringLiteral("an uppercase Z")},
        {30, QStringLiteral("1"), shift + u'!'},
        {39, QStringLiteral("0"), shift + u')'},
        {40, QStringLiteral("Enter (Return)"), {}},
        {47, QStringLiteral("["), shift + u'{'},
        {48, QStringLiteral("]"), shift + u'}'},
        {49, QStringLiteral("\\"), shift + u'|'},
        {50, QStringLiteral("Non-US #"), shift + u'~'},
        {52, QStringLiteral("'"), shift + u'"'},
        {53, QStringLiteral("`"), shift + u'~'},
        {57, QStringLiteral("Caps Lock"), QStringLiteral("Used with Shift")},
        {69, QStringLiteral("F12"), {}},
        {73, QStringLiteral("Fn"), QStringLiteral("Different from the keyboard's own fn key")},
        {79, QStringLiteral("→"), QStringLiteral("Right arrow")},
        {90, QStringLiteral("key pad ↓(Down arrow)"),
         keypad + QStringLiteral(" 2 with NumLock on")},
        {93, QStringLiteral("key pad 5"), QStringLiteral("Use with NumLock on No output when off")},
        {101, QStringLiteral("Application"), QStringLiteral("Same as right mouse click")},
        {103, QStringLiteral("key pad ="), keypad},
        {115, QStringLiteral("F24"), {}},
        {143, QStringLiteral("Keyboard International 9"), {}},
        {144, QStringLiteral("Keyboard LANG 1]"), {}},
        {145, QStringLiteral("Keyboard LANG 2"), {}},
        {165, QStringLiteral("---"), QStringLiteral("Reserved")},
        {175, QStringLiteral("---"), QStringLiteral("Reserved")},
        {176, QStringLiteral("key pad 00"), {}},
        {193, QStringLiteral("key pad F"), {}},
        {202, QStringLiteral("key pad ||"), {}},
        {221, QStringLiteral("key pad Hexadecimal"), {}},
        {223, QStringLiteral("---"), QStringLiteral("Reserved")},
        {224, QStringLiteral("(Left)Control"), {}},
        {231, QStringLiteral("Right Commandキー(GUI)"), {}},
        {232, QStringLiteral("Left Click Push Button"), QStringLiteral("Starting Left Click")},
        {237, QStringLiteral("Middle Click Release Button"),
         QStringLiteral("Finishing Middle Click")},
        {238, {}, {}},
        {300, {}, {}},
        {-1, {}, {}},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(GetKeyName(row.usageId), row.name) << row.usageId;
        EXPECT_EQ(GetKeyExplanation(row.usageId), row.explanation) << row.usageId;
    }
}

TEST(KeyUsage, HasWellFormedRecords)
{
    const QRegularExpression form(QStringLiteral(
        "^(Level:(STANDARD|ADVANCED) )?Name:\\[[^ ].*\\];?( Explanation:[A-Z].*[^ ])?$"));
    int explained = 0;
    for (int id = 0; id <= Max_UsageID; ++id) {
        const QString record = GetKeyContents(id);
        EXPECT_TRUE(form.match(record).hasMatch()) << record.toStdString();
        EXPECT_EQ(record.startsWith(u"Level:"), id < 232) << id;
        EXPECT_EQ(record.endsWith(u"];"), id == 144) << id;
        // The parts make up the whole record again, so nothing was cut off either of them.
        const QString explanation = GetKeyExplanation(id);
        const QString tail =
            explanation.isEmpty() ? QString() : QStringLiteral(" Explanation:") + explanation;
        const QString close = id == 144 ? QStringLiteral(";") : QStringLiteral("]");
        EXPECT_TRUE(record.endsWith(QStringLiteral("Name:[") + GetKeyName(id) + close + tail))
            << id;
        explained += explanation.isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(explained, 92);
    for (const int id : {-1, Max_UsageID + 1, 255, 300}) {
        EXPECT_EQ(GetKeyContents(id), QStringLiteral("Error at GetKeyContentsJ()")) << id;
    }
}

TEST(KeyUsage, CallsTheKeysOfTheStandardDialogStandard)
{
    std::vector<int> expected;
    for (const auto &[first, last] : {std::pair{4, 48}, {50, 56}, {58, 69}, {73, 99}}) {
        for (int id = first; id <= last; ++id) {
            expected.push_back(id);
        }
    }
    std::vector<int> standard;
    for (int id = -2; id <= 300; ++id) {
        if (isStandardKey(id)) {
            standard.push_back(id);
        }
    }
    EXPECT_EQ(standard.size(), 91);
    EXPECT_EQ(standard, expected);
}

TEST(KeyUsage, CountsPositionsInCharacters)
{
    struct Row
    {
        QString text;
        QString keyword;
        int position;
    };
    const QString a = GetKeyContents(4);
    const QString arrow = GetKeyContents(90);
    const QString accented = QStringLiteral("e\u0301xe"); // an e under an accent, x, e
    const QString family = QStringLiteral("\U0001F468\u200D\U0001F467 → キー"); // one joined emoji
    const std::vector<Row> rows = {
        {a, QStringLiteral("Name:["), 15},
        {a, QStringLiteral("] "), 22},
        {a, QStringLiteral("Explanation:"), 24},
        {GetKeyContents(70), QStringLiteral("]"), 33},
        {GetKeyContents(232), QStringLiteral("Name:["), 0},
        {GetKeyContents(232), QStringLiteral("Level:"), -1},
        {arrow, QStringLiteral("↓"), 29},
        {arrow, QStringLiteral("(D"), 30},
        {GetKeyContents(227), QStringLiteral("キー("), 34},
        {accented, QStringLiteral("e"), 2},
        {accented, QStringLiteral("x"), 1},
        {accented, QStringLiteral("e\u0301"), 0},
        {accented, QStringLiteral("ex"), -1},
        {family, QStringLiteral("\U0001F467"), -1},
        {family, QStringLiteral("→"), 2},
        {family, QStringLiteral("キ"), 4},
        {QStringLiteral("a\r\nb"), QStringLiteral("\n"), -1},
        {QStringLiteral("a\r\nb"), QStringLiteral("b"), 2},
        {QStringLiteral("aab"), QStringLiteral("ab"), 1},
        {QStringLiteral("ab"), QStringLiteral("abc"), -1},
        {QStringLiteral("ab"), {}, 0},
        {{}, {}, 0},
        {{}, QStringLiteral("a"), -1},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(IndexOf(row.text, row.keyword), row.position)
            << row.text.toStdString() << " / " << row.keyword.toStdString();
    }
}

} // namespace
} // namespace kavelo
