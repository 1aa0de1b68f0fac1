#include "PedalDescription.h"
#include "HeavyRecords.h"
#include "PedalSetting.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace kavelo {
namespace {

struct Row
{
    std::uint8_t mode;
    CommonRecord common;
    const char *text; ///< what follows "[Set function] ", with "\n" for the line break "\r\n"
    AdditionalBlock additional = {};
};

// clang-format off
constexpr auto Rows = std::to_array<Row>({
    {0, {2, 4}, "Key output\n[key] a\n[Key explanation] Shift and this key will be an uppercase A\n"
                "[Modifier] (left)shift"},
    {0, {0x80, 4}, "Key output\n[key] a\n"
                   "[Key explanation] Shift and this key will be an uppercase A\n"
                   "[Modifier] Right command"},
    {0, {}, "Key output\n[key] none\n[Modifier] none"},
    {0, {0, 101}, "Key output\n[key] Application\n[Key explanation] Same as right mouse click\n"
                  "[Modifier] none"},
    {0, {1, 103}, "Key output\n[Key] ---\n[Modifier] (Left)control"},
    {1, {0}, "Click\n[Button] Unexpected click"},
    {1, {1}, "Click\n[Button] Left"},
    {1, {2}, "Click\n[Button] Right"},
    {1, {3}, "Click\n[Button] Left, Right simultaneous click"},
    {1, {4}, "Click\n[Button] Middle"},
    {1, {5}, "Click\n[Button] Left, Middle simultaneous click"},
    {1, {6}, "Click\n[Button] Right, Middle simultaneous click"},
    {1, {7}, "Click\n[Button] Left, Right, Middle simultaneous click"},
    {1, {9}, "Click\n[Button] Unexpected click"},
    {2, {2, 255, 5, 0}, "Double click\n[Button] Right\n[First click length] 255 ms\n"
        "[Second click length] Same as the first click\n[Length between clicks] 0 ms"},
    {2, {3, 1, 1, 2}, "Double click\n[Button] Unexpected double click\n[First click length] 1 ms\n"
        "[Second click length] Until you release the pedal\n[Length between clicks] 2 ms"},
    // Each modifier is in a different set of the next rows, so two exchanged modifiers are noticed.
    {3, {0x55, 2}, "Modifier plus click\n"
        "[Modifier] (Left)control+(Left)option+Right control+Right option\n"
        "[Click] Right button click"},
    {3, {0, 4}, "Modifier plus click\n[Modifier] \n[Click] Middle button click"},
    {3, {0x33, 3}, "Modifier plus click\n"
        "[Modifier] (Left)control+(left)shift+Right control+Right shift\n"},
    {4, {0, 1, 9, 60, 1, 30}, "Modifier plus double click\n[Modifier] \n"
        "[Click] Left button double click\n[First click length] 60 ms\n"
        "[Second click length] Until you release the pedal\n[Length between clicks] 30 ms"},
    {4, {0x0F, 6, 1, 7, 2, 8}, "Modifier plus double click\n"
        "[Modifier] (Left)control+(left)shift+(Left)option+(Left)command\n"
        "[First click length] 7 ms\n[Second click length] Same as the first click\n"
        "[Length between clicks] 8 ms"},
    {5, {0, 4, 9, 9, 9, 9, 0, 0, 3, 0, 125, 1, 1}, "Continuous key output\n[Key] a\n"
        "[Key explanation] Shift and this key will be an uppercase A\n[Modifier] none\n"
        "[Speed] 12.5 Times / sec\n[Acceleration] off\n[Acceleration index] 0\n"
        "[Number of repetitions]3"},
    {5, {1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 50, 1, 2}, "Continuous key output\n[Key] none\n"
        "[Modifier] (Left)control\n[Speed] 5.0 Times / sec\n[Acceleration] on\n"
        "[Acceleration index] 258\n[Repetition] Until you release the pedal"},
    {6, {1, 255, 0, 0, 0, 0, 1, 0, 0, 0, 200, 0, 3}, "Move mouse pointer\n"
        "[Direction of movement] UpperRight\n[Speed] 200 Dots / sec\n[Acceleration] on\n"
        "[Acceleration index] 3\n[Repetition] Until you release the pedal"},
    {6, {2, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 3}, "Move mouse pointer\n"
        "[Direction of movement] -----\n[Speed] 256 Dots / sec\n[Acceleration] off\n"
        "[Acceleration index] 0\n[Repetition] 1"},
    {7, {255, 0, 0, 0, 0, 0, 0, 10, 0, 5}, "Wheel rotation\n[Direction of rotation] Backward\n"
        "[Speed] 5 Times / sec\n[Acceleration] off\n[Acceleration index] 0\n"
        "[Number of repetitions] 10"},
    {7, {1, 0, 0, 0, 0, 255, 0, 0, 2, 0, 1, 0}, "Wheel rotation\n[Direction of rotation] Forward\n"
        "[Speed] 512 Times / sec\n[Acceleration] on\n[Acceleration index] 256\n"
        "[Repetition] Until you release the pedal"},
    {7, {0}, "Wheel rotation\n[Direction of rotation] -----\n[Speed] 0 Times / sec\n"
        "[Acceleration] off\n[Acceleration index] 0\n[Repetition] Until you release the pedal"},
    {8, {4, 0, 0, 0, 0, 1, 1, 1, 0, 5, 0, 9}, "Continuous click\n[Button] Middle\n"
        "[Speed] 0.5 Times / sec\n[Acceleration] on\n[Acceleration index] 9\n"
        "[Number of repetitions] 257"},
    {8, {3}, "Continuous click\n[Speed] 0.0 Times / sec\n[Acceleration] off\n"
        "[Acceleration index] 0\n[Repetition] Until you release the pedal"},
    {9, {0xF4, 0x2C, 0x01, 0x82, 0, 3, 0, 4, 5}, "Multiple (Simultaneous) Key Output\n"
        "[On time] 244 ms\n[Time between] 300 ms\n[Number of outputs] 2\n"
        "[Number of repetitions] 3\n[Unit of repetition] set\n"
        "[1st Output] [a] + [b]\n[2nd Output] [(left)shift] + [c]", {2, 6}},
    {9, {0xFF, 0x34, 0xA5, 0x04, 1, 0, 1, 6, 25}, "Multiple (Simultaneous) Key Output\n"
        "[On time] 2815 ms\n[Time between] 1332 ms\n[Number of outputs] 4\n"
        "[Number of repetitions] 256\n[Unit of repetition] output\n"
        "[1st Output] [(Left)control] + [c] + [v]\n[2nd Output] [none] + []\n"
        "[3rd Output] [none]\n[Output No.4] [Left Click Push Button] + [e]",
        {0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 232, 0, 0, 0, 0, 8}},
    {9, {0, 0, 0, 0x80, 0, 0, 0, 0, 4}, "Multiple (Simultaneous) Key Output\n[On time] 0 ms\n"
        "[Time between] 0 ms\n[Number of outputs] 0\n[Repetition] Until you release the pedal\n"
        "[1st Output] [none] + [a]", {2, 6}},
    {9, {0, 0, 0, 127}, "Multiple (Simultaneous) Key Output\n[On time] 0 ms\n[Time between] 0 ms\n"
        "[Number of outputs] 127\n[Repetition] Until you release the pedal\n[1st Output] [none]\n"
        "[2nd Output] [none]\n[3rd Output] [none]\n[Output No.4] [none]\n[Output No.5] [none]\n"
        "[Output No.6] [none]\n[Output No.7] [none]\n[Output No.8] [none]\n[Output No.9] [none]\n"
        "[Output No.10] [none]"},
    {10, {1, 0, 232, 5, 5}, "Output when changing\n"
        "[Output when the pedal is depressed] Yes as follows\n[Click] Left Click Push Button\n"
        "[Click explanation] Starting Left Click\n[Modifier] none\n"
        "[Output when the pedal is released] none"},
    {10, {3, 1, 0, 2, 102}, "Output when changing\n"
        "[Output when the pedal is depressed] Yes as follows\n[Click] none\n"
        "[Click explanation] Output nothing\n[Modifier] (Left)control\n"
        "[Output when the pedal is released] Yes as follows\n[Click] Power\n"
        "[Click explanation] \n[Modifier] (left)shift"},
    {10, {0xFE, 1, 4, 0, 57}, "Output when changing\n[Output when the pedal is depressed] none\n"
        "[Output when the pedal is released] Yes as follows\n[Key] Caps Lock\n"
        "[Key explanation] Used with Shift\n[Modifier] none"},
    {10, {3, 0, 238, 0, 237}, "Output when changing\n"
        "[Output when the pedal is depressed] Yes as follows\n[Key] ---\n[Modifier] none\n"
        "[Output when the pedal is released] Yes as follows\n[Click] Middle Click Release Button\n"
        "[Click explanation] Finishing Middle Click\n[Modifier] none"},
});
// clang-format on

/// Each row is set on a pedal that is not selected. All other pedals have other settings.
TEST(PedalDescription, DescribesEverySetting)
{
    QLocale::setDefault(QLocale::German); // German has a decimal comma
    for (std::size_t i = 0; i < Rows.size(); ++i) {
        const auto &[mode, common, text, additional] = Rows.at(i);
        const std::size_t pedal = i % MaxPedals;
        OutputMode.at(pedal) = mode;
        CommonData.at(pedal) = common;
        AdditionalData.at(pedal) = additional;
        SelectedPedalNo = static_cast<int>((pedal + 2) % MaxPedals);
        QString expected = QStringLiteral("[Set function] ") + QLatin1String(text);
        expected.replace(u'\n', QStringLiteral("\r\n"));
        EXPECT_EQ(PedalDescription(static_cast<int>(pedal)).toStdString(), expected.toStdString());
    }
    QLocale::setDefault(QLocale::C);
    OutputMode[4] = NumberOfModes;
    EXPECT_EQ(PedalDescription(4), QStringLiteral("default"));
    EXPECT_EQ(PedalDescription(-1) + PedalDescription(MaxPedals), QString());
}

TEST(PedalDescription, NamesThePointersDirections)
{
    constexpr std::array Words{"UpperLeft", "Up",        "UpperRight", "Left",      "-----",
                               "Right",     "LowerLeft", "Down",       "LowerRight"};
    OutputMode[0] = POINTER_MOVE;
    for (std::size_t i = 0; i < Words.size(); ++i) {
        CommonData[0] = {static_cast<std::uint8_t>(i % 3 - 1),
                         static_cast<std::uint8_t>(i / 3 - 1)};
        EXPECT_TRUE(PedalDescription(0).contains(
            QStringLiteral("[Direction of movement] %1\r\n").arg(QLatin1String(Words.at(i)))))
            << Words.at(i);
    }
}

TEST(PedalSetting, ReadsSixteenBitsOfTheSelectedPedalsRecord)
{
    CommonData = {};
    CommonData[3] = {0, 0xFE, 0xDC};
    SelectedPedalNo = 3;
    EXPECT_EQ(IntoValue16(1), 0xFEDC);
    SelectedPedalNo = 4;
    EXPECT_EQ(IntoValue16(1), 0);
}

} // namespace
} // namespace kavelo
