#include "KaveloTest.h"

#include "HID_PnP.h"
#include "ProgramState.h"
#include "SimulatedBus.h"

#include <QTest>
#include <QTimer>

#include <stdio_ext.h>

namespace kavelo {

KaveloTest::KaveloTest()
{
    resetProgramState();
    bus::reset();
    QObject::connect(&unit, &SimulatedUnit::exchanged, &unit, [this](const Exchange &exchange) {
        if (exchange.outcome == Exchange::Outcome::Waiting ||
            exchange.outcome == Exchange::Outcome::Refused) {
            requests.push_back(exchange.request);
        }
    });
}

KaveloTest::~KaveloTest()
{
    EXPECT_TRUE(boxes.isDone()) << "a message box did not come";
}

void KaveloTest::when(const std::function<bool()> &condition, const std::function<void()> &action)
{
    auto *poll = new QTimer(&unit);
    poll->callOnTimeout([=] {
        if (condition()) {
            poll->stop();
            action();
        }
    });
    poll->start(1);
}

void KaveloTest::runTicks(int ticks)
{
    QTest::qWait(static_cast<int>(ticks * TickPeriod.count()));
}

std::string KaveloTest::printed(const std::function<void()> &action)
{
    ::testing::internal::CaptureStdout();
    action();
    EXPECT_EQ(__fpending(stdout), 0U) << "what a pipe's reader does not get yet";
    return ::testing::internal::GetCapturedStdout();
}

} // namespace kavelo
