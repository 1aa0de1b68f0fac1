#include "PedalDescription.h"
#include "PedalSetting.h"

#include <array>
#include <benchmark/benchmark.h>

namespace kavelo {
namespace {

// A record for each output mode that gives a long text: all lines, all modifiers, long names. Usage
// 94 is a keypad key with an arrow in its name, usage 237 a mouse button usage.
constexpr auto HeavyRecords = std::to_array<CommonRecord>({
    {0xFF, 94},
    {7},
    {4, 255, 1, 255},
    {0xFF, 4},
    {0xFF, 4, 0, 255, 1, 255},
    {0xFF, 94, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {1, 255, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {255, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {4, 0, 0, 0, 0, 1, 255, 255, 255, 255, 255, 255},
    {255, 255, 255, 0x8A, 255, 255, 0xFF, 94, 94, 94, 94, 94, 94},
    {3, 0xFF, 94, 0xFF, 237},
});
static_assert(HeavyRecords.size() == NumberOfModes);

/// Sets pedal 0 to the record of the mode. Outputs 2 to 10 of mode 9 are as long as its first one.
void setPedal(std::uint8_t mode)
{
    OutputMode[0] = mode;
    CommonData[0] = HeavyRecords.at(mode);
    for (std::size_t i = 0; i < AdditionalData[0].size(); ++i) {
        AdditionalData[0].at(i) = i % PskoOutputSize == 0 ? 0xFF : 94;
    }
}

void describePedal(benchmark::State &state)
{
    setPedal(static_cast<std::uint8_t>(state.range(0)));
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(PedalDescription(0));
    }
    state.counters["characters"] = static_cast<double>(PedalDescription(0).size());
}
BENCHMARK(describePedal)->ArgName("mode")->DenseRange(0, NumberOfModes - 1);

} // namespace
} // namespace kavelo
