#include "PedalDescription.h"

#include "ModelFixture.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <random>
#include <tuple>

namespace kavelo {
namespace {

struct Row
{
    std::uint8_t mode;
    Bytes common;     ///< bytes that are not given are 0
    const char *text; ///< behind "[Set function] "; "\n" stands for the line break "\r\n"
    Bytes additional = {};
};

class PedalDescriptionTest : public ModelTest
{
protected:
    /// Describes every row on another pedal than the selected one.
    static void expectTexts(const std::vector<Row> &rows)
    {
        std::size_t pedal = 0;
        for (const Row &row : rows) {
            setPedal(pedal, row.mode, row.common, row.additional);
            SelectedPedalNo = static_cast<int>((pedal + 2) % MaxPedals);
            const QString expected =
                QStringLiteral("[Set function] ") + QString::fromUtf8(row.text);
            EXPECT_EQ(PedalDescription(static_cast<int>(pedal)),
                      QString(expected).replace(u'\n', QStringLiteral("\r\n")));
            pedal = (pedal + 1) % MaxPedals;
        }
    }
};

TEST_F(PedalDescriptionTest, DescribesKeysAndClicks)
{
    expectTexts({
        {0,
         {2, 4},
         "Key output\n[key] a\n"
         "[Key explanation] Shift and this key will be an uppercase A\n[Modifier] (left)shift"},
        {0, {}, "Key output\n[key] none\n[Modifier] none"},
        {0, {0, 40}, "Key output\n[key] Enter (Return)\n[Modifier] none"},
        {0,
         {0, 101},
         "Key output\n[key] Application\n[Key explanation] Same as right mouse click\n"
         "[Modifier] none"},
        {0, {1, 103}, "Key output\n[Key] ---\n[Modifier] (Left)control"},
        {0, {0, 255}, "Key output\n[Key] ---\n[Modifier] none"},
        {1, {0}, "Click\n[Button] Unexpected click"},
        {1, {1}, "Click\n[Button] Left"},
        {1, {2}, "Click\n[Button] Right"},
        {1, {3}, "Click\n[Button] Left, Right simultaneous click"},
        {1, {4}, "Click\n[Button] Middle"},
        {1, {5}, "Click\n[Button] Left, Middle simultaneous click"},
        {1, {6}, "Click\n[Button] Right, Middle simultaneous click"},
        {1, {7}, "Click\n[Button] Left, Right, Middle simultaneous click"},
        {1, {8}, "Click\n[Button] Unexpected click"},
        {2,
         {1, 60, 0, 30},
         "Double click\n[Button] Left\n[First click length] 60 ms\n"
         "[Second click length] Same as the first click\n[Length between clicks] 30 ms"},
        {2,
         {2, 255, 5, 0},
         "Double click\n[Button] Right\n[First click length] 255 ms\n"
         "[Second click length] Same as the first click\n[Length between clicks] 0 ms"},
        {2,
         {3, 1, 1, 2},
         "Double click\n[Button] Unexpected double click\n[First click length] 1 ms\n"
         "[Second click length] Until you release the pedal\n[Length between clicks] 2 ms"},
        {3, {1, 2}, "Modifier plus click\n[Modifier] (Left)control\n[Click] Right button click"},
        {3, {0, 4}, "Modifier plus click\n[Modifier] \n[Click] Middle button click"},
        {3, {0x88, 3}, "Modifier plus click\n[Modifier] (Left)command+Right command\n"},
        {4,
         {0, 1, 9, 60, 1, 30},
         "Modifier plus double click\n[Modifier] \n[Click] Left button double click\n"
         "[First click length] 60 ms\n[Second click length] Until you release the pedal\n"
         "[Length between clicks] 30 ms"},
        {4,
         {2, 6, 1, 7, 2, 8},
         "Modifier plus double click\n[Modifier] (left)shift\n[First click length] 7 ms\n"
         "[Second click length] Same as the first click\n[Length between clicks] 8 ms"},
    });
}

TEST_F(PedalDescriptionTest, DescribesRepeatedOutputs)
{
    expectTexts({
        {5,
         {0, 4, 9, 9, 9, 9, 0, 0, 3, 0, 125, 1, 1},
         "Continuous key output\n[Key] a\n"
         "[Key explanation] Shift and this key will be an uppercase A\n[Modifier] none\n"
         "[Speed] 12.5 Times / sec\n[Acceleration] off\n[Acceleration index] 0\n"
         "[Number of repetitions]3"},
        {5,
         {1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 50, 1, 2},
         "Continuous key output\n[Key] none\n[Modifier] (Left)control\n"
         "[Speed] 5.0 Times / sec\n[Acceleration] on\n[Acceleration index] 258\n"
         "[Repetition] Until you release the pedal"},
        {5,
         {0, 102, 0, 0, 0, 0, 0, 1, 0, 255, 255},
         "Continuous key output\n[Key] ---\n[Modifier] none\n[Speed] 6553.5 Times / sec\n"
         "[Acceleration] off\n[Acceleration index] 0\n[Number of repetitions]256"},
        {6,
         {1, 255, 0, 0, 0, 0, 1, 0, 0, 0, 200, 0, 3},
         "Move mouse pointer\n[Direction of movement] UpperRight\n[Speed] 200 Dots / sec\n"
         "[Acceleration] on\n[Acceleration index] 3\n[Repetition] Until you release the pedal"},
        {6,
         {2, 0, 0, 0, 0, 0, 0, 0, 7, 1, 0, 0, 3},
         "Move mouse pointer\n[Direction of movement] -----\n[Speed] 256 Dots / sec\n"
         "[Acceleration] off\n[Acceleration index] 0\n[Repetition] 7"},
        {7,
         {255, 0, 0, 0, 0, 0, 0, 10, 0, 5},
         "Wheel rotation\n[Direction of rotation] Backward\n[Speed] 5 Times / sec\n"
         "[Acceleration] off\n[Acceleration index] 0\n[Number of repetitions] 10"},
        {7,
         {1, 0, 0, 0, 0, 255, 0, 0, 2, 0, 1, 0},
         "Wheel rotation\n[Direction of rotation] Forward\n[Speed] 512 Times / sec\n"
         "[Acceleration] on\n[Acceleration index] 256\n"
         "[Repetition] Until you release the pedal"},
        {7,
         {0},
         "Wheel rotation\n[Direction of rotation] -----\n[Speed] 0 Times / sec\n"
         "[Acceleration] off\n[Acceleration index] 0\n"
         "[Repetition] Until you release the pedal"},
        {8,
         {4, 0, 0, 0, 0, 1, 1, 1, 0, 5, 0, 9},
         "Continuous click\n[Button] Middle\n[Speed] 0.5 Times / sec\n[Acceleration] on\n"
         "[Acceleration index] 9\n[Number of repetitions] 257"},
        {8,
         {3},
         "Continuous click\n[Speed] 0.0 Times / sec\n[Acceleration] off\n"
         "[Acceleration index] 0\n[Repetition] Until you release the pedal"},
    });
}

TEST_F(PedalDescriptionTest, NamesThePointersDirections)
{
    constexpr std::array<std::array<const char *, 3>, 3> Words = {{
        {"UpperLeft", "Up", "UpperRight"},
        {"Left", "-----", "Right"},
        {"LowerLeft", "Down", "LowerRight"},
    }};
    for (const int y : {-1, 0, 1}) {
        for (const int x : {-1, 0, 1}) {
            setPedal(0, POINTER_MOVE, {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y)});
            EXPECT_EQ(PedalDescription(0).split(QStringLiteral("\r\n")).at(1),
                      QStringLiteral("[Direction of movement] ") +
                          QString::fromUtf8(Words.at(static_cast<std::size_t>(y + 1))
                                                .at(static_cast<std::size_t>(x + 1))));
        }
    }
}

TEST_F(PedalDescriptionTest, DescribesSequencesAndChanges)
{
    expectTexts({
        {9,
         {0xF4, 0x2C, 0x01, 0x82, 0, 3, 0, 4, 5},
         "Multiple (Simultaneous) Key Output\n[On time] 244 ms\n[Time between] 300 ms\n"
         "[Number of outputs] 2\n[Number of repetitions] 3\n[Unit of repetition] set\n"
         "[1st Output] [a] + [b]\n[2nd Output] [(left)shift] + [c]",
         {2, 6}},
        {9,
         {0xFF, 0x34, 0xA5, 0x04, 1, 0, 1, 6, 25},
         "Multiple (Simultaneous) Key Output\n[On time] 2815 ms\n[Time between] 1332 ms\n"
         "[Number of outputs] 4\n[Number of repetitions] 256\n[Unit of repetition] output\n"
         "[1st Output] [(Left)control] + [c] + [v]\n[2nd Output] [none] + []\n"
         "[3rd Output] [none]\n[Output No.4] [Left Click Push Button] + [e]",
         {0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 232, 0, 0, 0, 0, 8}},
        {9,
         {0, 0, 0, 0x80, 0, 0, 0, 0, 4},
         "Multiple (Simultaneous) Key Output\n[On time] 0 ms\n[Time between] 0 ms\n"
         "[Number of outputs] 0\n[Repetition] Until you release the pedal\n"
         "[1st Output] [none] + [a]",
         {2, 6}},
        {9,
         {0, 0, 0, 11},
         "Multiple (Simultaneous) Key Output\n[On time] 0 ms\n[Time between] 0 ms\n"
         "[Number of outputs] 11\n[Repetition] Until you release the pedal\n"
         "[1st Output] [none]\n[2nd Output] [none]\n[3rd Output] [none]\n[Output No.4] [none]\n"
         "[Output No.5] [none]\n[Output No.6] [none]\n[Output No.7] [none]\n"
         "[Output No.8] [none]\n[Output No.9] [none]\n[Output No.10] [none]"},
        {10,
         {1, 0, 232, 5, 5},
         "Output when changing\n[Output when the pedal is depressed] Yes as follows\n"
         "[Click] Left Click Push Button\n[Click explanation] Starting Left Click\n"
         "[Modifier] none\n[Output when the pedal is released] none"},
        {10,
         {3, 1, 0, 2, 102},
         "Output when changing\n[Output when the pedal is depressed] Yes as follows\n"
         "[Click] none\n[Click explanation] Output nothing\n[Modifier] (Left)control\n"
         "[Output when the pedal is released] Yes as follows\n[Click] Power\n"
         "[Click explanation] \n[Modifier] (left)shift"},
        {10,
         {0xFE, 1, 4, 0, 57},
         "Output when changing\n[Output when the pedal is depressed] none\n"
         "[Output when the pedal is released] Yes as follows\n[Key] Caps Lock\n"
         "[Key explanation] Used with Shift\n[Modifier] none"},
        {10,
         {3, 0, 238, 0, 40},
         "Output when changing\n[Output when the pedal is depressed] Yes as follows\n"
         "[Key] ---\n[Modifier] none\n[Output when the pedal is released] Yes as follows\n"
         "[Key] Enter (Return)\n[Modifier] none"},
    });
}

TEST_F(PedalDescriptionTest, HasATextForWhatIsNoModeAndNoneForWhatIsNoPedal)
{
    for (const std::uint8_t mode : {std::uint8_t{11}, std::uint8_t{255}}) {
        setPedal(4, mode, {1, 4});
        EXPECT_EQ(PedalDescription(4), QStringLiteral("default"));
    }
    for (const int pedal : {-1, MaxPedals, 255}) {
        EXPECT_EQ(PedalDescription(pedal), QString()) << pedal;
    }
}

// Every value of every byte in otherwise random records, in the last row so that a sanitizer
// notices a read past the arrays.
TEST_F(PedalDescriptionTest, TakesAnyRecordAndChangesNothing)
{
    std::mt19937 random(20230612);
    const auto fill = [&random](auto &row) {
        std::generate(row.begin(), row.end(),
                      [&random] { return static_cast<std::uint8_t>(random()); });
    };
    const QString lineBreak = QStringLiteral("\r\n");
    for (std::uint8_t mode = 0; mode <= OUTPUT_AT_CHANGE; ++mode) {
        for (std::size_t position = 0; position < CommonData[4].size(); ++position) {
            for (int value = 0; value <= 255; ++value) {
                OutputMode[4] = mode;
                fill(CommonData[4]);
                fill(AdditionalData[4]);
                CommonData[4].at(position) = static_cast<std::uint8_t>(value);
                const auto before = std::tuple(OutputMode, CommonData, AdditionalData);
                const QString text = PedalDescription(4);
                ASSERT_EQ(before, std::tuple(OutputMode, CommonData, AdditionalData));
                ASSERT_TRUE(text.startsWith(u"[Set function] "));
                ASSERT_EQ(text.count(u'\r'), text.count(lineBreak));
                if (mode == PLURAL_SIMULTANEOUS_KEY_OUTPUT) {
                    ASSERT_EQ(text.count(QStringLiteral("Output] ")) +
                                  text.count(QStringLiteral("[Output No.")),
                              std::clamp(CommonData[4][3] & 0x7F, 1, 10));
                }
            }
        }
    }
}

} // namespace
} // namespace kavelo
