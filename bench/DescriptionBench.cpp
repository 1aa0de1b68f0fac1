#include "HeavyRecords.h"
#include "PedalDescription.h"
#include "PedalSetting.h"

#include <benchmark/benchmark.h>

namespace kavelo {
namespace {

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
