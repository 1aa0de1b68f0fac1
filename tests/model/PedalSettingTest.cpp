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

TEST_F(PedalSettingTest, ReadsTheSharedBytesOfAMode9Record)
{
    const PskoSetting psko = pskoSettingIn({0xFF, 0x34, 0xA5, 0x83, 0x01, 0x02});
    EXPECT_EQ(psko.onTime, 2815);
    EXPECT_EQ(psko.timeBetween, 1332);
    EXPECT_EQ(psko.numberOfOutputs, 3);
    EXPECT_TRUE(psko.repeatsSet);
    EXPECT_EQ(psko.numberOfRepeats, 0x0102);
    EXPECT_FALSE(pskoSettingIn({0, 0, 0, 0x7F}).repeatsSet);
    EXPECT_EQ(pskoSettingIn({0, 0, 0, 0x7F}).numberOfOutputs, 127);
}

TEST_F(PedalSettingTest, OutputsOfAMode9SettingFillItsRecordAndItsBlock)
{
    const CommonRecord &record = CommonData[2];
    const AdditionalBlock &block = AdditionalData[2];
    EXPECT_EQ(pskoOutputIn(record, block, 1).data(), &record[6]);
    const std::uint8_t *expected = block.data();
    for (int n = 2; n <= NUMBER_OF_PSKO_OUTPUT; ++n, expected += PskoOutputSize) {
        EXPECT_EQ(pskoOutputIn(record, block, n).data(), expected) << n;
    }
}

} // namespace
} // namespace kavelo
