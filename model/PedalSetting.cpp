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
    storeValue16(selectedRecord(), value16, i);
}

void storeValue16(CommonRecord &record, int value16, int i)
{
    const auto high = static_cast<std::size_t>(i);
    record.at(high) = static_cast<std::uint8_t>(value16 >> 8);
    record.at(high + 1) = static_cast<std::uint8_t>(value16 & 0xFF);
}

std::uint16_t IntoValue16(int i)
{
    return value16In(selectedRecord(), i);
}

std::uint16_t value16In(const CommonRecord &record, int i)
{
    const auto high = static_cast<std::size_t>(i);
    return static_cast<std::uint16_t>((record.at(high) << 8) + record.at(high + 1));
}

PskoSetting pskoSettingIn(const CommonRecord &record)
{
    // Byte 2 holds bits 8 to 11 of both times. Bit 7 of byte 3 is a flag; its other bits are the
    // number of outputs.
    return {.onTime = ((record[2] & 0xF0) << 4) + record[0],
            .timeBetween = ((record[2] & 0x0F) << 8) + record[1],
            .numberOfOutputs = record[3] & 0x7F,
            .repeatsSet = (record[3] & 0x80) != 0,
            .numberOfRepeats = value16In(record, 4)};
}

PskoOutput pskoOutputIn(const CommonRecord &record, const AdditionalBlock &additional, int n)
{
    if (n == 1) {
        return std::span(record).last<PskoOutputSize>();
    }
    return std::span(additional)
        .subspan(static_cast<std::size_t>(n - 2) * PskoOutputSize)
        .first<PskoOutputSize>();
}

} // namespace kavelo
