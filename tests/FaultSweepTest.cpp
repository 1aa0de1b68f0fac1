#include "MenuClass.h"
#include "WindowTest.h"

#include <QAction>
#include <QTimer>

#include <tuple>

namespace kavelo {
namespace {

using std::chrono::milliseconds;

/// What is done with the unit, in how many exchanges.
struct Task
{
    const char *name;
    int exchanges;

    bool operator==(const Task &) const = default;
};

constexpr Task Read{"Read", 12};
constexpr Task Write{"Write", 2};
constexpr Task Restore{"Restore", 6};

/// What comes after the fault.
enum class Then { Nothing, ReplugAtOnce, ReplugOnceBlank, ReplyAfterTimeout };

/// What goes wrong in an exchange.
struct Trouble
{
    const char *name;
    FaultKind fault;
    const char *box; ///< what the user is told about the exchange itself
    Then then;
};

constexpr std::array<Trouble, 7> Troubles{{
    {"Unplug", FaultKind::Unplug, "timeout", Then::Nothing},
    {"ReplugAtOnce", FaultKind::Unplug, nullptr, Then::ReplugAtOnce},
    {"ReplugOnceBlank", FaultKind::Unplug, nullptr, Then::ReplugOnceBlank},
    {"RefuseSend", FaultKind::RefuseSend, "sending error", Then::Nothing},
    {"DropReply", FaultKind::DropReply, "timeout", Then::Nothing},
    {"ReplyAfterTimeout", FaultKind::DropReply, "timeout", Then::ReplyAfterTimeout},
    {"AnswerTwice", FaultKind::AnswerTwice, nullptr, Then::Nothing},
}};

constexpr std::size_t EditedPedal = 2;
const auto Success = QStringLiteral("The settings of the Right Pedal have finished successfully.");

using Parameter = std::tuple<Task, Trouble>;

class FaultSweepTest : public WindowTest, public ::testing::WithParamInterface<Parameter>
{
protected:
    // A reply too late or too many must still come before the link gives it up, whatever else the
    // machine does.
    FaultSweepTest()
        : WindowTest(std::get<Trouble>(GetParam()).then == Then::ReplyAfterTimeout ||
                             std::get<Trouble>(GetParam()).fault == FaultKind::AnswerTwice
                         ? milliseconds(50)
                         : milliseconds(10))
        , menu(window.menuItems())
    {
        // A second reply comes when the next request is out already.
        unit.setReplyDelay(milliseconds(3));
    }

    [[nodiscard]] bool fails() const { return trouble.fault != FaultKind::AnswerTwice; }
    [[nodiscard]] bool unitGoes() const { return trouble.fault == FaultKind::Unplug; }
    [[nodiscard]] bool staysAway() const { return unitGoes() && trouble.then == Then::Nothing; }

    void prepare()
    {
        unit.memory() = {};
        setFiveModes(unit);
        unit.memory().pedals[EditedPedal].record[0] = 1; // the dialog can show it
        unit.memory().timing = {1, 2, 3, 4};
        if (task != Read) {
            bus::plugIn(unit);
            ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        }
    }

    void strike(int exchange, const QObject &context)
    {
        unit.setFault({.kind = trouble.fault, .exchange = exchange});
        if (task == Restore) {
            boxes.answerWith(Qt::Key_Escape);
        }
        if (trouble.then == Then::ReplugAtOnce) {
            QObject::connect(
                &unit, &SimulatedUnit::poweredChanged, &context,
                [this](bool powered) {
                    if (!powered) {
                        bus::plugIn(unit);
                    }
                },
                Qt::QueuedConnection);
        } else if (trouble.then == Then::ReplugOnceBlank) {
            when([this] { return !bus::isPluggedIn(unit) && !requests.empty() && isBlank(); },
                 [this] { bus::plugIn(unit); });
        } else if (trouble.then == Then::ReplyAfterTimeout) {
            boxes.reactWith([this](QMessageBox &box) {
                QTimer::singleShot(TickPeriod, &unit, [this] {
                    Q_EMIT unit.inputReport({0xEE, 0xEE, 9, 0xEE, 0xEE});
                });
                QTest::keyClick(&box, Qt::Key_Return);
            });
        }
    }

    void perform()
    {
        requests.clear();
        if (task == Read) {
            bus::plugIn(unit);
        } else if (task == Write) {
            writeClick(EditedPedal, QStringLiteral("radiobuttonRightClick"));
        } else {
            window.menuItems().InitialStateToolStripMenuItem->trigger();
        }
    }

    [[nodiscard]] QStringList expectedBoxes(int exchange) const
    {
        QStringList expected;
        if (task == Restore) {
            expected << RestoreQuestion;
        }
        if (trouble.box != nullptr) {
            expected << QLatin1String(trouble.box);
        }
        if (task == Restore) {
            const bool isLast = exchange == task.exchanges;
            expected << (unitGoes() || (fails() && isLast) ? NotRestored : Restored);
        } else if (task == Write && !fails()) {
            expected << Success;
        }
        return expected;
    }

    /// Every record is the old one or the new one, by whether its exchange has been carried out.
    [[nodiscard]] UnitMemory expectedMemory(int exchange, const UnitMemory &before) const
    {
        UnitMemory after = factoryState(before);
        if (task == Write) {
            after = before;
            after.pedals[EditedPedal].record[0] = 2;
        }
        UnitMemory expected = before;
        for (int i = 1; task != Read && i <= task.exchanges; ++i) {
            const bool goesOn = !unitGoes() && (task == Restore || !fails());
            const bool isCarriedOut =
                i < exchange || (i == exchange ? trouble.fault != FaultKind::RefuseSend : goesOn);
            if (isCarriedOut && i == task.exchanges) {
                expected.timing = UnitMemory().timing;
            } else if (isCarriedOut) {
                const std::size_t pedal = task == Write ? EditedPedal : std::size_t(i - 1);
                expected.pedals[pedal] = after.pedals[pedal];
            }
        }
        return expected;
    }

    void pullOut()
    {
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
    }

    /// The next read and the next edit work as ever.
    void goOn()
    {
        pullOut();
        unit.setFault({});
        unit.memory().pedals[EditedPedal] = {.mode = SIMPLE_CLICK, .record = {1}};
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        writeClick(EditedPedal, QStringLiteral("radiobuttonCenterClick"));
        EXPECT_EQ(boxes.messages().last(), Success);
        EXPECT_EQ(unit.memory().pedals[EditedPedal].record[0], 4);
        EXPECT_TRUE(showsUnit(unit));
        pullOut();
    }

    void strikeAndCheck(int exchange)
    {
        prepare();
        const UnitMemory before = unit.memory();
        const qsizetype told = boxes.messages().size();
        const QStringList expected = expectedBoxes(exchange);
        {
            const QObject whileTroubled;
            strike(exchange, whileTroubled);
            perform();
            const auto hasSettled = [&] {
                return boxes.messages().size() - told == expected.size() &&
                       (staysAway() ? isBlank() : showsUnit(unit));
            };
            EXPECT_TRUE(waitUntil(hasSettled)) << explanation().toStdString();
            runTicks(5);
            EXPECT_TRUE(waitUntil(hasSettled)) << explanation().toStdString();
        }
        EXPECT_EQ(boxes.messages().mid(told), expected);
        EXPECT_TRUE(unit.memory() == expectedMemory(exchange, before)) << "a record is torn";
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(bus::isPluggedIn(unit), !staysAway());
        goOn();
    }

    const Task task = std::get<Task>(GetParam());
    const Trouble trouble = std::get<Trouble>(GetParam());
    MenuClass menu;
};

TEST_P(FaultSweepTest, IsToldAndLeavesWholeRecordsAndARightWindowAtEveryExchange)
{
    // After a failure the later exchanges would only wait for what does not come.
    for (int exchange = 1; exchange <= task.exchanges && !HasFailure(); ++exchange) {
        SCOPED_TRACE(exchange);
        strikeAndCheck(exchange);
    }
}

std::string nameOf(const ::testing::TestParamInfo<Parameter> &test)
{
    return std::string(std::get<Task>(test.param).name) + std::get<Trouble>(test.param).name;
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultSweepTest,
                         ::testing::Combine(::testing::Values(Read, Write, Restore),
                                            ::testing::ValuesIn(Troubles)),
                         nameOf);

} // namespace
} // namespace kavelo
