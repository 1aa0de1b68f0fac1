#include "WindowTest.h"

#include <tuple>

namespace kavelo {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t EditedPedal = 2;
const auto Success = QStringLiteral("The settings of the Right Pedal have finished successfully.");

/// What is done with the unit.
enum Task { Read, Write, Restore };
constexpr std::array TaskNames{"Read", "Write", "Restore"};
/// The pedals that a task writes, one an exchange; the timing parameters follow.
const std::array<std::vector<std::size_t>, 3> WrittenPedals{{{}, {EditedPedal}, {0, 1, 2, 3, 4}}};

/// When a unit that has gone comes again.
enum class Replug { Never, AtOnce, OnceBlank };

/// What goes wrong in an exchange.
struct Trouble
{
    const char *name;
    FaultKind fault;
    const char *box; ///< what the user is told about the exchange itself
    Replug replug = Replug::Never;
};

constexpr std::array<Trouble, 7> Troubles{{
    {"Unplug", FaultKind::Unplug, "timeout"},
    {"ReplugAtOnce", FaultKind::Unplug, nullptr, Replug::AtOnce},
    {"ReplugOnceBlank", FaultKind::Unplug, nullptr, Replug::OnceBlank},
    {"RefuseSend", FaultKind::RefuseSend, "sending error"},
    {"DropReply", FaultKind::DropReply, "timeout"},
    {"AnswerLate", FaultKind::AnswerLate, "timeout"},
    {"AnswerTwice", FaultKind::AnswerTwice, nullptr},
}};

using Parameter = std::tuple<Task, Trouble>;

class FaultSweepTest : public WindowTest, public ::testing::WithParamInterface<Parameter>
{
protected:
    FaultSweepTest()
    {
        unit.setReplyDelay(milliseconds(3)); // a second reply comes when the next request is out
        unit.setLateness(ReplyTimeout + ReplyLateness / 2);
    }

    [[nodiscard]] QStringList expectedBoxes(int exchange) const
    {
        const bool succeeds = exchange < exchanges ? goesOn : !fails;
        QStringList expected{QString::fromLatin1(trouble.box)};
        if (task == Restore) {
            expected.prepend(RestoreQuestion);
            expected << (succeeds ? Restored : NotRestored);
        } else if (task == Write && succeeds) {
            expected << Success;
        }
        expected.removeAll(QString());
        return expected;
    }

    /// Every record is the old one or the new one, by whether its exchange has been carried out.
    [[nodiscard]] UnitMemory expectedMemory(int exchange) const
    {
        const auto isDone = [&](int other) {
            return other == exchange ? trouble.fault != FaultKind::RefuseSend
                                     : other < exchange || goesOn;
        };
        UnitMemory expected = unit.memory();
        int i = 0;
        for (const std::size_t pedal : WrittenPedals.at(task)) {
            if (isDone(++i)) {
                expected.pedals.at(pedal) = restored(expected).pedals.at(pedal);
            }
        }
        if (task != Read && isDone(exchanges)) {
            expected.timing = UnitMemory().timing;
        }
        return expected;
    }

    void perform()
    {
        if (trouble.replug != Replug::Never) {
            when(
                [this] {
                    return !bus::isPluggedIn(unit) && !requests.empty() &&
                           (trouble.replug == Replug::AtOnce || isBlank());
                },
                [this] { bus::plugIn(unit); });
        }
        if (task == Read) {
            bus::plugIn(unit);
        } else if (task == Write) {
            writeClick(EditedPedal, "RightClick"); // the factory's
            EXPECT_EQ(isBlank(), fails);
        } else {
            boxes.answerWith(Qt::Key_Escape);
            restoreItem()->trigger();
        }
    }

    void strikeAndCheck(int exchange)
    {
        unit.memory() = {};
        setFiveModes(unit);
        unit.memory().timing = {1, 2, 3, 4};
        if (task != Read) {
            plugInAndWait();
        }
        requests.clear();
        const qsizetype told = boxes.messages().size();
        const QStringList expected = expectedBoxes(exchange);
        const UnitMemory memory = expectedMemory(exchange);
        const bool staysAway = goes && trouble.replug == Replug::Never;
        unit.setFault({.kind = trouble.fault, .exchange = exchange});
        perform();
        const auto hasSettled = [&] {
            return boxes.messages().size() - told == expected.size() &&
                   (staysAway ? isBlank() : showsUnit(unit));
        };
        EXPECT_TRUE(waitUntil(hasSettled)) << explanation().toStdString();
        runTicks(5);
        EXPECT_TRUE(waitUntil(hasSettled)) << explanation().toStdString();
        EXPECT_EQ(boxes.messages().mid(told), expected);
        EXPECT_TRUE(unit.memory() == memory) << "a record is torn";
        EXPECT_TRUE(fails || task == Read ||
                    requests.at(std::size_t(exchanges) - 1)[0] == SET_PARAMETERS)
            << "nothing gets in between";
        EXPECT_TRUE(trouble.replug == Replug::Never ||
                    requests.size() <= std::size_t(exchange) + ReadExchanges)
            << "a unit that has come is read once";
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }

    /// The next read and the next edit work as ever.
    void goOn()
    {
        unplugAndWait();
        unit.setFault({});
        unit.memory().pedals[EditedPedal] = {.mode = SIMPLE_CLICK, .record = {1}};
        plugInAndWait();
        writeClick(EditedPedal, "CenterClick");
        EXPECT_EQ(boxes.messages().last(), Success);
        EXPECT_EQ(unit.memory().pedals[EditedPedal].record[0], 4);
        EXPECT_TRUE(showsUnit(unit));
        unplugAndWait();
    }

    const Task task = std::get<Task>(GetParam());
    const Trouble trouble = std::get<Trouble>(GetParam());
    const bool fails = trouble.fault != FaultKind::AnswerTwice;
    const bool goes = trouble.fault == FaultKind::Unplug;
    const bool goesOn = !fails || (task == Restore && !goes); ///< with the exchanges that follow
    const int exchanges =
        task == Read ? int(ReadExchanges) : int(WrittenPedals.at(task).size()) + 1;
};

TEST_P(FaultSweepTest, IsToldAndLeavesWholeRecordsAndARightWindowAtEveryExchange)
{
    // After a failure the later exchanges would only wait for what does not come.
    for (int exchange = 1; exchange <= exchanges && !HasFailure(); ++exchange) {
        SCOPED_TRACE(exchange);
        strikeAndCheck(exchange);
        goOn();
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultSweepTest,
                         ::testing::Combine(::testing::Values(Read, Write, Restore),
                                            ::testing::ValuesIn(Troubles)),
                         [](const auto &test) {
                             return std::string(TaskNames.at(std::get<Task>(test.param))) +
                                    std::get<Trouble>(test.param).name;
                         });

} // namespace
} // namespace kavelo
