#include "BoxWatcher.h"
#include "HID_PnP.h"
#include "MainWindowViewController.h"
#include "ModifierName.h"
#include "PedalSettingDialog.h"
#include "SimulatedBus.h"
#include "SimulatedUnit.h"

#include <QAbstractButton>
#include <QApplication>

#include <benchmark/benchmark.h>

namespace kavelo {
namespace {

using std::chrono::steady_clock;

/// The main window and a unit with five pedals. Every pedal has ten outputs in mode 9, the setting
/// that takes longest to read.
struct Bench
{
    explicit Bench(std::chrono::milliseconds replyDelay = {})
    {
        for (PedalMemory &pedal : unit.memory().pedals) {
            pedal.mode = PLURAL_SIMULTANEOUS_KEY_OUTPUT;
            pedal.record = {0x2C, 0x50, 0x10, 0x8A, 0, 3, LeftControl, 4, 5, 6, 7, 8, 9};
            pedal.additional.fill(4);
        }
        unit.setReplyDelay(replyDelay);
        bus::plugIn(unit);
        window.show();
        QApplication::processEvents();
        window.UpdateAppWindow(); // reads the unit
    }

    SimulatedUnit unit;
    BoxWatcher boxes;
    MainWindowViewController window;
};

std::chrono::milliseconds delayOf(const benchmark::State &state)
{
    return std::chrono::milliseconds(state.range(0));
}

/// Number of exchanges of a read: the version, the number of pedals, and for each of the five
/// pedals its record and five pieces of its block.
constexpr int ExchangesOfRead = 32;

/// The time that the simulated unit needs for the exchanges of a read, without the link and the
/// window.
void unitAlone(benchmark::State &state)
{
    SimulatedUnit unit;
    unit.setReplyDelay(delayOf(state));
    unit.setPowered(true);
    bool isAnswered = false;
    QObject::connect(&unit, &SimulatedUnit::inputReport, [&isAnswered] { isAnswered = true; });
    for ([[maybe_unused]] auto iteration : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        for (int i = 0; i < ExchangesOfRead; ++i) {
            isAnswered = !unit.receive({GET_VERSION_NUMBER});
            while (!isAnswered) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
        }
    }
}

/// The time from the start of a read until the last row is enabled.
void read(benchmark::State &state)
{
    Bench bench(delayOf(state));
    for ([[maybe_unused]] auto iteration : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        DeviceDetectedChanged = true;
        bench.window.UpdateAppWindow();
    }
}

/// The time from OK in a dialog until the success message: two exchanges.
void write(benchmark::State &state)
{
    Bench bench(delayOf(state));
    SelectedPedalNo = 0;
    SettingEnabled = true;
    for ([[maybe_unused]] auto iteration : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        steady_clock::time_point told;
        bench.boxes.reactWith([&told](QMessageBox &box) {
            told = steady_clock::now();
            box.accept();
        });
        const auto start = steady_clock::now();
        bench.window.SettingDialog_OK();
        state.SetIterationTime(std::chrono::duration<double>(told - start).count());
    }
}

/// The time from the answer to the question until the success message: six exchanges.
void restore(benchmark::State &state)
{
    Bench bench(delayOf(state));
    for ([[maybe_unused]] auto iteration : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        steady_clock::time_point answered;
        steady_clock::time_point told;
        bench.boxes.reactWith([&answered](QMessageBox &box) {
            answered = steady_clock::now();
            box.button(QMessageBox::Ok)->click();
        });
        bench.boxes.reactWith([&told](QMessageBox &box) {
            told = steady_clock::now();
            box.accept();
        });
        InitialState = true;
        bench.window.UpdateAppWindow();
        state.SetIterationTime(std::chrono::duration<double>(told - answered).count());
    }
}

void withDelays(benchmark::internal::Benchmark *benchmark)
{
    benchmark->ArgName("delay")->Arg(0)->Arg(1)->Arg(8)->Iterations(20)->Unit(
        benchmark::kMillisecond);
}
BENCHMARK(unitAlone)->Apply(withDelays)->UseRealTime();
BENCHMARK(read)->Apply(withDelays)->UseRealTime();
BENCHMARK(write)->Apply(withDelays)->UseManualTime();
BENCHMARK(restore)->Apply(withDelays)->UseManualTime();

/// The CPU time of an exchange that times out, including the ticks of the main window.
void timeout(benchmark::State &state)
{
    Bench bench;
    bench.unit.setFault({.kind = FaultKind::DropReply, .exchange = 0});
    for ([[maybe_unused]] auto iteration : state) { // NOLINT(clang-analyzer-deadcode.DeadStores)
        bench.window.plugNPlay.Communicate(GET_PEDAL_STATE, MESSAGE_OFF);
    }
}
BENCHMARK(timeout)->MeasureProcessCPUTime()->UseRealTime()->Iterations(1)->Unit(
    benchmark::kMillisecond);

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
