#include "BoxWatcher.h"
#include "Footprint.h"
#include "MainWindowViewController.h"
#include "PluggedDevice.h"
#include "ProgramState.h"

#include <QPlainTextEdit>
#include <QProcess>
#include <QTimer>

namespace kavelo::test {
namespace {

/// The main window and a unit of one pedal.
class Product : public testing::Test
{
protected:
    Product() { unit.memory().numberOfPedals = 1; }

    void openWindow()
    {
        resetProgramState();
        window = std::make_unique<MainWindowViewController>();
        window->show();
        text = window->findChild<QPlainTextEdit *>(QStringLiteral("textboxPedal0Contents"));
    }
    void plugInAnew()
    {
        device.reset();
        device = plugIn({.firmware = &unit});
    }
    bool shows(const char *expected)
    {
        return waitUntil([&] { return text->toPlainText() == QLatin1String(expected); });
    }
    /// Whether the unit has been read so many times. A read takes three requests.
    bool wasRead(std::size_t times)
    {
        return waitUntil([&] { return device->writes.size() == times * 3; });
    }

    static constexpr const char *Setting = "[Set function] Click\n[Button] Left";

    SimulatedUnit unit;
    std::unique_ptr<PluggedDevice> device;
    BoxWatcher boxes;
    std::unique_ptr<MainWindowViewController> window;
    QPlainTextEdit *text = nullptr;
};

TEST_F(Product, KeepsItsUnitFromASecondProgramThatTakesItWhenTheFirstLetsGo)
{
    openWindow();
    plugInAnew();
    ASSERT_TRUE(shows(Setting));
    QProcess other;
    other.start(QCoreApplication::applicationDirPath() + QStringLiteral("/kavelo"), {});
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

TEST_F(Product, TakesTheUnitThatWaitsWhenItsOwnGoes)
{
    SimulatedUnit second;
    second.memory().numberOfPedals = 1;
    second.memory().pedals[0].record = {2};
    openWindow();
    plugInAnew();
    ASSERT_TRUE(shows(Setting));
    const auto waiting = plugIn({.firmware = &second});
    device.reset();
    EXPECT_TRUE(shows("[Set function] Click\n[Button] Right"));
    EXPECT_EQ(waiting->writes.size(), 3U);
}

TEST_F(Product, ReadsAUnitThatHasGoneInAnyExchangeOnceItIsBack)
{
    enum Task { Read, Write, Restore };
    const std::vector<std::pair<Task, int>> cases{{Read, 1},  {Read, 2},    {Read, 3},   {Write, 1},
                                                  {Write, 2}, {Restore, 1}, {Restore, 2}};
    openWindow();
    bool returnsAtOnce = false;
    QObject::connect(&unit, &SimulatedUnit::poweredChanged, window.get(), [&](bool isPowered) {
        if (!isPowered && std::exchange(returnsAtOnce, false)) {
            QTimer::singleShot(0, window.get(), [this] { plugInAnew(); });
        }
    });
    for (int i = 0; i < 2 * std::ssize(cases) && !HasFailure(); ++i) {
        const auto [task, exchange] = cases.at(std::size_t(i / 2));
        const bool isShort = i % 2 == 1;
        if (!isShort && exchange > 1) {
            continue; // waits for the timeout of 3 s, as with the first exchange
        }
        SCOPED_TRACE(testing::Message() << task << exchange << isShort);
        unit.setFault({});
        if (task != Read) {
            unit.memory().pedals[0] = UnitMemory().pedals[0];
            plugInAnew();
            ASSERT_TRUE(wasRead(1) && shows(Setting));
        }
        boxes.forgetMessages();
        unit.setFault({.kind = FaultKind::Unplug, .exchange = exchange});
        returnsAtOnce = isShort;
        if (task == Read) {
            plugInAnew();
        } else if (task == Write) {
            SettingEnabled = true;
            window->SettingDialog_OK();
        } else {
            boxes.answerWith(Qt::Key_Escape);
            InitialState = true;
        }
        const qsizetype told = (isShort ? 0 : 1) + (task == Restore ? 2 : 0);
        ASSERT_TRUE(waitUntil([&] {
            return boxes.messages().size() == told && !returnsAtOnce && unit.isPowered() == isShort;
        }));
        if (!isShort) {
            ASSERT_TRUE(shows(""));
            plugInAnew();
        }
        unit.setFault({});
        EXPECT_TRUE(waitUntil([&] { return device->writes.size() >= 3; }));
        EXPECT_TRUE(shows(Setting));
        EXPECT_EQ(device->writes.front().at(1), GET_VERSION_NUMBER) << "meant for the one before";
        EXPECT_EQ(boxes.messages().size(), told);
    }
}

TEST_F(Product, EndsAtAUnitOfMajorVersion3)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    boxes.reactWith([](QMessageBox &box) {
        std::fputs(qPrintable(box.informativeText()), stderr);
        box.close();
    });
    EXPECT_EXIT(
        {
            unit.memory().version[0] = 3;
            openWindow();
            plugInAnew();
            static_cast<void>(waitUntil([] { return false; }));
        },
        testing::ExitedWithCode(0), "This version is not supported");
}

/// The parameter is the number of rounds.
class LongRun : public Product, public testing::WithParamInterface<int>
{
};

TEST_P(LongRun, PlugInsLeaveNothingBehind)
{
    openWindow();
    expectSteadyFootprint(*window, GetParam(), [this](int) {
        plugInAnew();
        ASSERT_TRUE(shows(Setting));
        ASSERT_TRUE(wasRead(1));
        device.reset();
        ASSERT_TRUE(shows(""));
        ASSERT_FALSE(text->isVisible());
    });
}

INSTANTIATE_TEST_SUITE_P(Short, LongRun, testing::Values(20));
// Run by scripts/long-run, not by ctest.
INSTANTIATE_TEST_SUITE_P(Full, LongRun, testing::Values(500));

} // namespace
} // namespace kavelo::test
