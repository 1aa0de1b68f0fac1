#include "Footprint.h"
#include "WindowTest.h"

namespace kavelo {
namespace {

/// The parameter is the number of rounds.
class LongRunTest : public WindowTest, public ::testing::WithParamInterface<int>
{
protected:
    LongRunTest() { setFiveModes(unit); }
};

TEST_P(LongRunTest, PlugInsAndEditsLeaveNothingBehind)
{
    expectSteadyFootprint(window, GetParam(), [this](int round) {
        plugInAndWait();
        const std::uint8_t button = round % 2 == 0 ? 2 : 4;
        writeClick(2, button == 2 ? "RightClick" : "CenterClick");
        ASSERT_EQ(unit.memory().pedals[2].record[0], button);
        ASSERT_TRUE(showsUnit(unit));
        boxes.answerWith(Qt::Key_Return);
        restoreItem()->trigger();
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        boxes.answerWith(Qt::Key_Return);
        window.menuItems().VersionInformationToolStripMenuItem->trigger();
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        unplugAndWait();
        ASSERT_EQ(boxes.messages().size(), 3);
        requests.clear();
        boxes.forgetMessages();
    });
}

INSTANTIATE_TEST_SUITE_P(Short, LongRunTest, ::testing::Values(30));
// ctest leaves these out; scripts/long-run runs them.
INSTANTIATE_TEST_SUITE_P(Full, LongRunTest, ::testing::Values(2000));

} // namespace
} // namespace kavelo
