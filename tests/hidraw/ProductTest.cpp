#include "Footprint.h"
#include "MainWindowViewController.h"
#include "MockBus.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

namespace kavelo::test {
namespace {

/// What a unit of one pedal answers: version 2.1.0, one pedal, Shift and the key "a".
Bytes replyTo(std::uint8_t command)
{
    switch (command) {
    case GET_VERSION_NUMBER:
        return {0, 0, 2, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    case GET_NUMBER_OF_PEDALS:
        return {0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    default:
        return {0, 0, SIMPLE_KEY_OUTPUT, 2, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    }
}

/// Answers the requests to a node in their order, as long as it lives.
class Firmware
{
public:
    Firmware(MockBus &bus, std::string node)
        : m_bus(bus)
        , m_node(std::move(node))
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const std::vector<Bytes> writes = m_bus.writes(m_node);
            if (m_answered < writes.size()) {
                m_bus.queueReport(m_node, replyTo(writes[m_answered++][1]));
            }
        });
        m_timer.start(1);
    }

    [[nodiscard]] std::size_t answered() const { return m_answered; }

private:
    MockBus &m_bus;
    std::string m_node;
    std::size_t m_answered = 0;
    QTimer m_timer;
};

/// The main window on the mock bus.
class Product : public testing::Test
{
protected:
    explicit Product(std::chrono::milliseconds tickPeriod = TickPeriod)
        : tick(TickPeriod, tickPeriod)
    {
        DeviceDetectedChanged = false;
        window = std::make_unique<MainWindowViewController>();
        window->show();
        text = window->findChild<QPlainTextEdit *>(QStringLiteral("textboxPedal0Contents"));
    }

    /// One stay of a unit on the bus.
    void plugInAndOut()
    {
        const auto shows = [&](const QString &expected) {
            return QTest::qWaitFor([&] { return text->toPlainText() == expected; }, 20000);
        };
        const std::string node = bus.plug();
        {
            const Firmware firmware(bus, node);
            EXPECT_TRUE(shows(QStringLiteral("[Set function] Key output\n[key] a\n"
                                             "[Key explanation] Shift and this key will be an "
                                             "uppercase A\n[Modifier] (left)shift")));
            EXPECT_EQ(firmware.answered(), 3U);
        }
        bus.unplug(node);
        ASSERT_TRUE(shows(QString()));
        EXPECT_FALSE(text->isVisible());
    }

    QScopedValueRollback<std::chrono::milliseconds> tick;
    MockBus bus;
    std::unique_ptr<MainWindowViewController> window;
    QPlainTextEdit *text = nullptr;
};

TEST_F(Product, ShowsAUnitOnHidrawAndBlanksTheWindowWhenItGoes)
{
    plugInAndOut();
    plugInAndOut();
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
    expectSteadyFootprint(*window, GetParam(), [this](int) { plugInAndOut(); });
}

INSTANTIATE_TEST_SUITE_P(Short, LongRun, testing::Values(50));
// Not among the tests that ctest runs: scripts/long-run.
INSTANTIATE_TEST_SUITE_P(Full, LongRun, testing::Values(500));

} // namespace
} // namespace kavelo::test
