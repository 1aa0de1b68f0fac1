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
    const std::size_t kept = __fpending(stdout);
    const std::string output = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(kept, 0U) << "bytes come late through a pipe";
    return output;
}

} // namespace kavelo
