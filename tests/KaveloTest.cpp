#include "KaveloTest.h"

#include "LinkState.h"
#include "MainWindowViewController.h"
#include "SettingDialogViewController.h"

#include <QTest>
#include <QTimer>

#include <utility>

namespace kavelo {
namespace {

void resetModuleState()
{
    resetLinkState();
    InitialState = SettingEnabled = timer2state = false;
    PedalName.clear();
    TickPeriod = DefaultTickPeriod;
}

} // namespace

KaveloTest::KaveloTest(std::chrono::milliseconds tickPeriod)
{
    resetModuleState();
    TickPeriod = tickPeriod;
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
    resetModuleState();
}

bool KaveloTest::waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, 20000);
}

void KaveloTest::when(std::function<bool()> condition, std::function<void()> action)
{
    auto *poll = new QTimer(&unit);
    QObject::connect(poll, &QTimer::timeout, poll,
                     [poll, condition = std::move(condition), action = std::move(action)] {
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

} // namespace kavelo
