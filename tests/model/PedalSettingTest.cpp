#include "PedalSetting.h"
#include "ModifierName.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace kavelo {
namespace {

TEST(PedalSetting, PacksSixteenBitsIntoTheSelectedRowHighByteFirst)
{
    CommonData = {};
    SelectedPedalNo = 3;
    IntoTwoCommonData(0x1234, 7);
    IntoTwoCommonData(0xFFFE, 11);
    const CommonRecord expected{0, 0, 0, 0, 0, 0, 0, 0x12, 0x34, 0, 0, 0xFF, 0xFE};
    EXPECT_EQ(CommonData, (std::array<CommonRecord, MaxPedals>{{{}, {}, {}, expected, {}}}));
    EXPECT_EQ(IntoValue16(11), 0xFFFE);
    SelectedPedalNo = 4;
    EXPECT_EQ(IntoValue16(11), 0);
}

TEST(ModifierName, JoinsTheSetBitsInBitOrder)
{
    const QString all = QStringLiteral("(Left)control+(left)shift+(Left)option+(Left)command+"
                                       "Right control+Right shift+Right option+Right command");
    EXPECT_EQ(GetModifierName(0xFF), all);
    for (int bit = 0; bit < 8; ++bit) {
        EXPECT_EQ(GetModifierName(static_cast<std::uint8_t>(1 << bit)), all.split(u'+').at(bit));
    }
}

} // namespace
} // namespace kavelo
