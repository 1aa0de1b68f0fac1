#include "BoxWatcher.h"
#include "Footprint.h"
#include "MainWindowViewController.h"
#include "MockDevice.h"

#include <QPlainTextEdit>
#include <QProcess>

namespace kavelo::test {
namespace {

/// The main window and a unit of one pedal.
class Product : public testing::Test
{
protected:
    Product() { unit.memory().numberOfPedals = 1; }

    void openWindow()
    {
        DeviceDetectedChanged = false;
        window = std::make_unique<MainWindowViewController>();
        window->show();
        text = window->findChild<QPlainTextEdit *>(QStringLiteral("textboxPedal0Contents"));
    }
    bool shows(const char *expected)
    {
        return waitUntil([&] { return text->toPlainText() == QLatin1String(expected); });
    }
    /// Whether the unit has been read so many times, each of which takes three requests.
    bool wasRead(std::size_t times)
    {
        return waitUntil([&] { return device->writes.size() == times * 3; });
    }

    static constexpr const char *Setting = "[Set function] Click\n[Button] Left";

    SimulatedUnit unit;
    std::optional<MockDevice> device;
    BoxWatcher boxes;
    std::unique_ptr<MainWindowViewController> window;
    QPlainTextEdit *text = nullptr;
};

TEST_F(Product, KeepsItsUnitFromASecondProgramThatTakesItWhenTheFirstLetsGo)
{
    openWindow();
    device.emplace(DeviceKind{.firmware = &unit});
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
};

TEST_P(LongRun, PlugInsOnHidrawLeaveNothingBehind)
{
    openWindow();
    expectSteadyFootprint(*window, GetParam(), [this](int) {
        device.emplace(DeviceKind{.firmware = &unit});
        ASSERT_TRUE(shows(Setting));
        ASSERT_TRUE(wasRead(1));
        device.reset();
        ASSERT_TRUE(shows(""));
        ASSERT_FALSE(text->isVisible());
    });
}

INSTANTIATE_TEST_SUITE_P(Short, LongRun, testing::Values(20));
// Not among the tests that ctest runs: scripts/long-run.
INSTANTIATE_TEST_SUITE_P(Full, LongRun, testing::Values(500));

} // namespace
} // namespace kavelo::test
