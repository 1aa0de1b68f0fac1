#include "MenuClass.h"
#include "WindowTest.h"

#include <QAction>
#include <QTimer>

#include <cstdlib>
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

constexpr std::array<Trouble, 8> Troubles{{
    {"Unplug", FaultKind::Unplug, "timeout", Then::Nothing},
    {"ReplugAtOnce", FaultKind::Unplug, nullptr, Then::ReplugAtOnce},
    {"ReplugOnceBlank", FaultKind::Unplug, nullptr, Then::ReplugOnceBlank},
    {"RefuseSend", FaultKind::RefuseSend, "sending error", Then::Nothing},
    {"DropReply", FaultKind::DropReply, "timeout", Then::Nothing},
    {"ReplyAfterTimeout", FaultKind::DropReply, "timeout", Then::ReplyAfterTimeout},
    {"AnswerTwice", FaultKind::AnswerTwice, nullptr, Then::Nothing},
    {"AnswerGarbage", FaultKind::AnswerGarbage, nullptr, Then::Nothing},
}};

// Exchanges of a read: 1 version, 2 number of pedals, 3 pedal 0, 4 pedal 1, 5 to 9 the pieces of
// its block, 10 to 12 the other pedals.
constexpr int Version = 1;
constexpr int Count = 2;
constexpr std::size_t SequencePedal = 1;
constexpr bool isPiece(int exchange)
{
    return exchange >= 5 && exchange <= 9;
}
constexpr std::size_t pedalOf(int exchange)
{
    return exchange < 5 ? std::size_t(exchange - 3) : std::size_t(exchange - 8);
}

constexpr std::size_t EditedPedal = 2;
const auto Success = QStringLiteral("The settings of the Right Pedal have finished successfully.");

/// The first garbage that a unit with this seed sends.
hid::Report garbage(std::uint32_t seed)
{
    std::mt19937 random(seed);
    hid::Report report{};
    std::ranges::generate(report, [&] { return std::uint8_t(random()); });
    return report;
}

/// A seed whose garbage has this byte 2: the major version, the number of pedals, or the mode.
std::uint32_t seedWith(int byte2)
{
    std::uint32_t seed = 1;
    while (garbage(seed)[2] != byte2) {
        ++seed;
    }
    return seed;
}

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

    [[nodiscard]] bool fails() const
    {
        return trouble.fault != FaultKind::AnswerTwice && trouble.fault != FaultKind::AnswerGarbage;
    }
    [[nodiscard]] bool unitGoes() const { return trouble.fault == FaultKind::Unplug; }
    [[nodiscard]] bool staysAway() const { return unitGoes() && trouble.then == Then::Nothing; }

    /// Garbage of every sort that the exchange makes a difference of; for other faults just one
    /// round.
    [[nodiscard]] std::vector<std::uint32_t> seeds(int exchange) const
    {
        if (trouble.fault != FaultKind::AnswerGarbage || task != Read) {
            return {1};
        }
        if (exchange == Version) {
            return {seedWith(0), seedWith(2)}; // others end the program
        }
        return exchange == Count
                   ? std::vector{seedWith(0), seedWith(3), seedWith(200)}
                   : std::vector{seedWith(PLURAL_SIMULTANEOUS_KEY_OUTPUT), seedWith(200)};
    }

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

    void strike(int exchange, std::uint32_t seed, const QObject &context)
    {
        unit.setGarbageSeed(seed);
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

    [[nodiscard]] QStringList expectedBoxes(int exchange, const hid::Report &reply) const
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
        } else if (isRefusedCount(exchange, reply)) {
            expected << QStringLiteral("This number of pedals is not supported");
        }
        return expected;
    }

    [[nodiscard]] bool isRefusedCount(int exchange, const hid::Report &reply) const
    {
        return task == Read && trouble.fault == FaultKind::AnswerGarbage && exchange == Count &&
               reply[2] > MaxPedals;
    }

    [[nodiscard]] bool endsBlank(int exchange, const hid::Report &reply) const
    {
        return staysAway() || isRefusedCount(exchange, reply);
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

    /// What a read gets: the unit's memory but for the reply that was garbage.
    [[nodiscard]] UnitMemory expectedReading(int exchange, const hid::Report &reply) const
    {
        UnitMemory reading = unit.memory();
        if (trouble.fault != FaultKind::AnswerGarbage || task != Read || exchange == Version) {
            return reading;
        }
        if (exchange == Count) {
            reading.numberOfPedals = reply[2];
        } else if (isPiece(exchange)) {
            AdditionalBlock &block = reading.pedals[SequencePedal].additional;
            const std::ptrdiff_t start = std::ptrdiff_t{exchange - 5} * ADDITIONAL_DATA_ONE_TIME;
            const std::ptrdiff_t size =
                std::min<std::ptrdiff_t>(ADDITIONAL_DATA_ONE_TIME, std::ssize(block) - start);
            std::copy_n(reply.begin() + 2, size, block.begin() + start);
        } else {
            PedalMemory &pedal = reading.pedals.at(pedalOf(exchange));
            pedal.mode = reply[2];
            std::copy_n(reply.begin() + 3, pedal.record.size(), pedal.record.begin());
        }
        return reading;
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

    void strikeAndCheck(int exchange, std::uint32_t seed)
    {
        prepare();
        const UnitMemory before = unit.memory();
        const qsizetype told = boxes.messages().size();
        const hid::Report reply = garbage(seed);
        const QStringList expected = expectedBoxes(exchange, reply);
        {
            const QObject whileTroubled;
            strike(exchange, seed, whileTroubled);
            perform();
            const auto hasSettled = [&] {
                return boxes.messages().size() - told == expected.size() &&
                       (endsBlank(exchange, reply) ? isBlank()
                                                   : shows(expectedReading(exchange, reply)));
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
    for (int exchange = 1; exchange <= task.exchanges; ++exchange) {
        for (const std::uint32_t seed : seeds(exchange)) {
            SCOPED_TRACE(::testing::Message() << "exchange " << exchange << " seed " << seed);
            strikeAndCheck(exchange, seed);
            if (HasFailure()) {
                return; // the later exchanges would only wait for what does not come
            }
        }
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
