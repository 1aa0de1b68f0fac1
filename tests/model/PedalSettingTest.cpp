#include "ModelFixture.h"

namespace kavelo {
namespace {

class PedalSettingTest : public ModelTest
{
};

TEST_F(PedalSettingTest, PacksSixteenBitsIntoTheSelectedRowHighByteFirst)
{
    SelectedPedalNo = 3;
    IntoTwoCommonData(0x1234, 7);
    IntoTwoCommonData(0xFFFE, 11);
    EXPECT_EQ(CommonData[3], (CommonRecord{0, 0, 0, 0, 0, 0, 0, 0x12, 0x34, 0, 0, 0xFF, 0xFE}));
    EXPECT_EQ(IntoValue16(7), 0x1234);
    EXPECT_EQ(IntoValue16(11), 0xFFFE);
    for (const std::size_t other : {0U, 1U, 2U, 4U}) {
        EXPECT_EQ(CommonData.at(other), CommonRecord{});
    }
    SelectedPedalNo = 4;
    EXPECT_EQ(IntoValue16(7), 0);
}

} // namespace
} // namespace kavelo
