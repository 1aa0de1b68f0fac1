#include "FactorySettings.h"

#include "PedalSetting.h"

#include <algorithm>

namespace kavelo {
namespace {

struct FactorySetting
{
    std::uint8_t mode;
    std::array<std::uint8_t, 2> bytes;
    std::size_t size; ///< number of bytes that the setting uses
};

constexpr auto FactorySettings = std::to_array<FactorySetting>({
    {SIMPLE_CLICK, {1, 0}, 1},         // left click
    {SIMPLE_KEY_OUTPUT, {0, 0x28}, 2}, // Enter (Return)
    {SIMPLE_CLICK, {2, 0}, 1},         // right click
    {SIMPLE_KEY_OUTPUT, {0, 0x50}, 2}, // left arrow
    {SIMPLE_KEY_OUTPUT, {0, 0x4F}, 2}, // right arrow
});
static_assert(FactorySettings.size() == MaxPedals);

} // namespace

void applyFactorySetting(int pedal)
{
    const auto row = static_cast<std::size_t>(pedal);
    if (row >= FactorySettings.size()) {
        return;
    }
    const FactorySetting &setting = FactorySettings.at(row);
    OutputMode.at(row) = setting.mode;
    std::copy_n(setting.bytes.begin(), setting.size, CommonData.at(row).begin());
}

} // namespace kavelo
