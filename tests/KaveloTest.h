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

/// The one fixture: every test starts from the module-wide state of a fresh process, with an empty
/// bus, one factory-new simulated unit of five pedals beside it, and somebody to answer boxes. Time
/// is made up: it passes only where the program sleeps.
class KaveloTest : public ::testing::Test
{
    Q_DISABLE_COPY_MOVE(KaveloTest)

protected:
    KaveloTest();
    ~KaveloTest() override;

    /// Does `action` once, as soon as `condition` holds, also inside the program's own waits, in
    /// which the test itself does not get on.
    void when(const std::function<bool()> &condition, const std::function<void()> &action);
    /// Runs the event loop for some ticks of the program's timers.
    static void runTicks(int ticks);
    /// What the program writes to standard output meanwhile.
    static std::string printed(const std::function<void()> &action);

    /// Requests that the unit has seen, in their order.
    std::vector<hid::Report> requests;
    SimulatedUnit unit;
    BoxWatcher boxes;
};

} // namespace kavelo
