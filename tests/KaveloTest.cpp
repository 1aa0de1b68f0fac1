#include "KaveloTest.h"

#include "LinkState.h"
#include "MainWindowViewController.h"
#include "SettingDialogViewController.h"

#include <QTest>
#include <QTimer>

namespace kavelo {

KaveloTest::KaveloTest()
{
    resetLinkState();
    InitialState = SettingEnabled = timer2state = false;
    PedalName.clear();
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
    return ::testing::internal::GetCapturedStdout();
}

} // namespace kavelo
