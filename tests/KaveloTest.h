#pragma once

#include "BoxWatcher.h"
#include "SimulatedUnit.h"
#include "WaitUntil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// Readable failures.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace kavelo {

/// The base of all fixtures. Every test starts with the module-wide state of a new process, an
/// empty bus, a simulated unit of five pedals in the factory state that is not plugged in, and a
/// simulated user who answers boxes. Time is simulated: it passes only when the program sleeps.
class KaveloTest : public ::testing::Test
{
    Q_DISABLE_COPY_MOVE(KaveloTest)

protected:
    KaveloTest();
    ~KaveloTest() override;

    /// Calls `action` once, as soon as `condition` holds. This also works while the program waits
    /// and blocks the test.
    void when(const std::function<bool()> &condition, const std::function<void()> &action);
    /// Runs the event loop for some ticks of the program's timers.
    static void runTicks(int ticks);
    /// Returns what the program writes to standard output during `action`.
    static std::string printed(const std::function<void()> &action);

    /// All requests to the unit, also refused ones, in their order.
    std::vector<hid::Report> requests;
    SimulatedUnit unit;
    BoxWatcher boxes;
};

} // namespace kavelo
