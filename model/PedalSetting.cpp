#include "PedalSetting.h"

namespace kavelo {
namespace {

CommonRecord &selectedRecord()
{
    return CommonData.at(static_cast<std::size_t>(SelectedPedalNo));
}

} // namespace

void IntoTwoCommonData(int value16, int i)
{
    const auto high = static_cast<std::size_t>(i);
    selectedRecord().at(high) = static_cast<std::uint8_t>(value16 >> 8);
    selectedRecord().at(high + 1) = static_cast<std::uint8_t>(value16 & 0xFF);
}

std::uint16_t IntoValue16(int i)
{
    const auto high = static_cast<std::size_t>(i);
    return static_cast<std::uint16_t>((selectedRecord().at(high) << 8) +
                                      selectedRecord().at(high + 1));
}

} // namespace kavelo
