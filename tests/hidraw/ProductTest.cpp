#include "BoxWatcher.h"
#include "Footprint.h"
#include "MainWindowViewController.h"
#include "MockBus.h"
#include "SimulatedUnit.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QProcess>
#include <QScopedValueRollback>
#include <QTest>

#include <chrono>
#include <memory>
#include <string>

namespace kavelo::test {
namespace {

constexpr std::size_t RequestsOfARead = 3; // of a unit with one pedal

/// The main window and a unit of one pedal on the mock bus.
class Product : public testing::Test
{
protected:
    explicit Product(std::chrono::milliseconds tickPeriod = TickPeriod)
        : tick(TickPeriod, tickPeriod)
    {
        unit.memory().numberOfPedals = 1;
    }

    void openWindow()
    {
        DeviceDetectedChanged = false;
        window = std::make_unique<MainWindowViewController>();
        window->show();
        text = window->findChild<QPlainTextEdit *>(QStringLiteral("textboxPedal0Contents"));
    }
    static bool waitUntil(const std::function<bool()> &holds)
    {
        return QTest::qWaitFor(holds, 20000);
    }
    bool shows(const char *expected)
    {
        return waitUntil([&] { return text->toPlainText() == QLatin1String(expected); });
    }
    bool wasRead(std::size_t times)
    {
        return waitUntil([&] { return bus.writes(node).size() == times * RequestsOfARead; });
    }

    /// One stay of the unit on the bus.
    void plugInAndOut()
    {
        node = bus.plug({.firmware = &unit});
        EXPECT_TRUE(shows(Setting));
        EXPECT_TRUE(wasRead(1));
        bus.unplug(node);
        ASSERT_TRUE(shows(""));
        EXPECT_FALSE(text->isVisible());
    }

    static constexpr const char *Setting = "[Set function] Click\n[Button] Left";

    QScopedValueRollback<std::chrono::milliseconds> tick;
    SimulatedUnit unit;
    MockBus bus;
    std::string node;
    BoxWatcher boxes;
    std::unique_ptr<MainWindowViewController> window;
    QPlainTextEdit *text = nullptr;
};

TEST_F(Product, ShowsAUnitOnHidrawAndBlanksTheWindowWhenItGoes)
{
    openWindow();
    plugInAndOut();
    plugInAndOut();
}

TEST_F(Product, KeepsItsUnitFromASecondProgramThatTakesItWhenTheFirstLetsGo)
{
    openWindow();
    node = bus.plug({.firmware = &unit});
    ASSERT_TRUE(shows(Setting));
    QProcess other;
    other.start(QStringLiteral(KAVELO_PROGRAM), {});
    QByteArray said;
    ASSERT_TRUE(waitUntil([&] {
        return (said += other.readAllStandardError()).contains("another program uses it");
    }));
    EXPECT_TRUE(wasRead(1));

    window.reset();
    EXPECT_TRUE(wasRead(2));
    openWindow();
    EXPECT_TRUE(waitUntil([&] { return !boxes.messages().empty(); }));
    EXPECT_EQ(boxes.messages(), QStringList(QStringLiteral("sending error")));
    other.kill();
    EXPECT_TRUE(shows(Setting));
    EXPECT_TRUE(wasRead(3));
}

/// The parameter is the number of rounds.
class LongRun : public Product, public testing::WithParamInterface<int>
{
protected:
    LongRun()
        : Product(std::chrono::milliseconds(10))
    {
    }
};

TEST_P(LongRun, PlugInsOnHidrawLeaveNothingBehind)
{
    openWindow();
    expectSteadyFootprint(*window, GetParam(), [this](int) { plugInAndOut(); });
}

INSTANTIATE_TEST_SUITE_P(Short, LongRun, testing::Values(50));
// Not among the tests that ctest runs: scripts/long-run.
INSTANTIATE_TEST_SUITE_P(Full, LongRun, testing::Values(500));

} // namespace
} // namespace kavelo::test
