#include "HID_PnP.h"
#include "MainWindowViewController.h"
#include "ModifierName.h"
#include "SimulatedBus.h"
#include "SimulatedUnit.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace kavelo {
namespace {

/// Version, pedal count, and for each of five pedals its record and five pieces of its block.
constexpr int ExchangesOfRead = 32;

void fillWithSequences(SimulatedUnit &unit)
{
    for (PedalMemory &pedal : unit.memory().pedals) {
        pedal.mode = PLURAL_SIMULTANEOUS_KEY_OUTPUT;
        pedal.record = {0x2C, 0x50, 0x10, 0x8A, 0, 3, LeftControl, 4, 5, 6, 7, 8, 9};
        pedal.additional.fill(4);
    }
}

/// From the change flag being handled to the last row enabled. The counter sets the time of an
/// exchange against what the unit itself takes for it.
void readFivePedals(benchmark::State &state)
{
    const std::chrono::milliseconds delay(state.range(0));
    SimulatedUnit unit;
    fillWithSequences(unit);
    unit.setReplyDelay(delay);
    bus::plugIn(unit);
    MainWindowViewController window;
    window.show();
    QApplication::processEvents();
    for ([[maybe_unused]] auto iteration : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        DeviceDetectedChanged = true;
        window.UpdateAppWindow();
    }
    using PerDelay = benchmark::Counter;
    const double delays = double(ExchangesOfRead) * double(state.iterations()) *
                          std::chrono::duration<double>(delay).count();
    state.counters["exchange/delay"] = PerDelay(delays, PerDelay::kIsRate | PerDelay::kInvert);
}
BENCHMARK(readFivePedals)
    ->Arg(1)
    ->Arg(8)
    ->UseRealTime()
    ->Iterations(20)
    ->Unit(benchmark::kMillisecond);

/// The CPU time of a wait that nothing answers, with the main window's ticks going on.
void waitForTimeout(benchmark::State &state)
{
    SimulatedUnit unit;
    bus::plugIn(unit);
    MainWindowViewController window;
    window.show();
    window.UpdateAppWindow();
    unit.setFault({.kind = FaultKind::DropReply, .exchange = 0});
    for ([[maybe_unused]] auto iteration : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        window.plugNPlay.Communicate(GET_PEDAL_STATE, MESSAGE_OFF);
    }
}
BENCHMARK(waitForTimeout)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kavelo

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
