#include "Footprint.h"
#include "RunLoop.h"
#include "WindowTest.h"

#include <QDeadlineTimer>

namespace kavelo {
namespace {

using namespace std::chrono_literals;

/// The parameter is the number of rounds.
class LongRunTest : public WindowTest, public ::testing::WithParamInterface<int>
{
protected:
    LongRunTest()
        : WindowTest(1ms)
    {
        setFiveModes(unit);
        unit.memory().pedals[2] = {.mode = SIMPLE_CLICK, .record = {4}};
    }

    /// Like waitUntil(), but without a sleep between two looks.
    [[nodiscard]] static bool runUntil(const std::function<bool()> &condition)
    {
        const QDeadlineTimer patience(20s);
        while (!condition() && !patience.hasExpired()) {
            runEventLoop(100ms);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return condition();
    }

    /// What the tests themselves keep of a round.
    void forget()
    {
        requests.clear();
        boxes.forgetMessages();
    }
};

TEST_P(LongRunTest, PlugInsLeaveNothingBehind)
{
    expectSteadyFootprint(window, GetParam(), [this](int) {
        bus::plugIn(unit);
        ASSERT_TRUE(runUntil([this] { return litRows().size() == MaxPedals; }));
        ASSERT_TRUE(showsUnit(unit));
        bus::unplug(unit);
        ASSERT_TRUE(runUntil([this] { return isBlank(); }));
        ASSERT_EQ(boxes.messages(), QStringList());
        forget();
    });
}

TEST_P(LongRunTest, EditsLeaveNothingBehind)
{
    bus::plugIn(unit);
    ASSERT_TRUE(runUntil([this] { return showsUnit(unit); }));
    expectSteadyFootprint(window, GetParam(), [this](int round) {
        const std::uint8_t button = round % 2 == 0 ? 1 : 2;
        writeClick(2, button == 1 ? QStringLiteral("radiobuttonLeftClick")
                                  : QStringLiteral("radiobuttonRightClick"));
        ASSERT_TRUE(runUntil([this] { return dialog() == nullptr; }));
        ASSERT_EQ(unit.memory().pedals[2].record[0], button);
        ASSERT_EQ(boxes.messages().size(), 1);
        forget();
    });
}

INSTANTIATE_TEST_SUITE_P(Short, LongRunTest, ::testing::Values(100));
// Not among the tests that ctest runs: scripts/long-run.
INSTANTIATE_TEST_SUITE_P(Full, LongRunTest, ::testing::Values(2000));

} // namespace
} // namespace kavelo
