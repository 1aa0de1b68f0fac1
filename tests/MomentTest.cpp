#include "AdvancedSettingDialogViewController.h"
#include "WindowTest.h"

#include <QMessageBox>
#include <QTabWidget>

#include <tuple>

namespace kavelo {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

/// What the user does. RestoreOk answers a question that has been open for some time.
enum Command { Standard, Write, AdvancedOk, Restore, RestoreOk };
constexpr std::array CommandNames{"Standard", "Write", "AdvancedOk", "Restore", "RestoreOk"};

/// What goes wrong in one exchange.
struct Trouble
{
    const char *name;
    FaultKind fault;
    milliseconds lateness;   ///< of the reply
    milliseconds lastMoment; ///< when all is at rest again
    bool isSwap = false;     ///< another unit takes the place of the one that goes
};

constexpr std::array<Trouble, 6> Troubles{{
    {"Goes", FaultKind::Unplug, 0ms, 4500ms},
    {"IsSwapped", FaultKind::Unplug, 0ms, 1000ms, true},
    {"ReplyLost", FaultKind::DropReply, 0ms, 5000ms},
    {"ReplyTwice", FaultKind::AnswerTwice, 0ms, 1000ms},
    {"Reply1200msLate", FaultKind::AnswerLate, ReplyTimeout + 1200ms, 6000ms},
    {"Reply5sLate", FaultKind::AnswerLate, ReplyTimeout + 5s, 9500ms},
}};

/// The exchanges in which something goes wrong: a read of three pedals, and most of a restore.
constexpr int Exchanges = 8;

using Parameter = std::tuple<Command, Trouble, int>;

/// A unit is plugged in and read. In one exchange something goes wrong, and at some moment the user
/// does something. Exchange 0 stands for trouble that comes when the window is at rest. The last
/// parameter says how many of the cases are tried: 1 is all of them, 2 is every second one.
class MomentTest : public WindowTest, public ::testing::WithParamInterface<Parameter>
{
protected:
    MomentTest()
    {
        boxes.reactToOthersWith([](QMessageBox &box) {
            if (box.informativeText() != RestoreQuestion) { // which is answered at the moment
                box.close();
            }
        });
    }

    void start(int exchange)
    {
        fill(unit, 3, 1); // the version's first byte is 2
        fill(next, 2, 100);
        m_before = {unit.memory(), next.memory()};
        unit.setLateness(trouble.lateness);
        unit.setFault(
            {.kind = exchange > 0 ? trouble.fault : FaultKind::None, .exchange = exchange});
        boxes.forgetMessages();
        requests.clear();
        m_isWriteTaken = false;
        m_steps = {};
        if (trouble.isSwap) {
            once([this] { return !requests.empty() && !bus::isPluggedIn(unit); },
                 [this] { bus::plugIn(next); });
        }
        prepare();
        bus::plugIn(unit);
    }

    /// The trouble that comes when the window is at rest.
    void disturb()
    {
        if (trouble.fault == FaultKind::Unplug) {
            bus::unplug(unit);
        } else {
            Q_EMIT unit.inputReport({0xEE, 0xEE, 0xEE});
        }
    }

    /// A click, a pointer movement and a click. Each byte occurs only once on both units.
    static void fill(SimulatedUnit &filled, std::uint8_t pedals, std::uint8_t firstByte)
    {
        constexpr std::array Modes{SIMPLE_CLICK, POINTER_MOVE, SIMPLE_CLICK};
        filled.memory() = {};
        filled.memory().numberOfPedals = pedals;
        filled.setReplyDelay(10ms);
        for (std::size_t i = 0; i < Modes.size(); ++i) {
            PedalMemory &pedal = filled.memory().pedals.at(i);
            pedal.mode = Modes.at(i);
            std::ranges::generate(pedal.record, [&] { return firstByte++; });
        }
        filled.memory().pedals[0].record[0] = 1; // the left button
    }
    /// What a unit holds after the command.
    [[nodiscard]] UnitMemory commanded(UnitMemory memory) const
    {
        memory.pedals[0].record[0] = 2; // the right button
        return command < Restore ? memory : restored(memory);
    }

    /// Does something once, as soon as the condition holds.
    void once(const std::function<bool()> &condition, const std::function<void()> &action)
    {
        m_steps.emplace_back(condition, action);
    }
    void takeSteps()
    {
        for (std::size_t i = 0; i < m_steps.size(); ++i) {
            if (m_steps.at(i).first && m_steps.at(i).first()) {
                const auto action = std::exchange(m_steps.at(i), {}).second;
                action();
            }
        }
    }

    /// Opens what the command needs as soon as that is possible.
    void prepare()
    {
        const auto isLit = [this] { return standard(0)->isEnabled(); };
        if (command == Write) {
            once(isLit, [this] { standard(0)->click(); });
        } else if (command == AdvancedOk) {
            once(isLit, [this] {
                SelectedPedalNo = 0;
                PedalName = name(0)->text();
                SettingEnabled = true;
                window.SetPedal2Advanced_clicked();
            });
        } else if (command == RestoreOk) {
            once([this] { return restoreItem()->isEnabled() && litRows() == 3; },
                 [this] { restoreItem()->trigger(); });
        }
    }

    void act()
    {
        if (command == Standard) {
            standard(0)->click();
        } else if (command == Restore) {
            restoreItem()->trigger();
        }
        if (command >= Restore) {
            once([] { return question() != nullptr; },
                 [] { question()->button(QMessageBox::Ok)->click(); });
        } else if (command != Standard) {
            m_isWriteTaken = writeRightClick();
        }
    }

    static QMessageBox *question()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        return box != nullptr && box->informativeText() == RestoreQuestion ? box : nullptr;
    }

    /// Sets the pedal in the open dialog. Returns whether the dialog takes it.
    bool writeRightClick()
    {
        auto *const open = shownDialog();
        if (open == nullptr || !open->isEnabled()) {
            return false;
        }
        if (auto *tabs = open->findChild<QTabWidget *>(QStringLiteral("tabcontrolOutputMode"))) {
            tabs->setCurrentIndex(1); // the mouse
        }
        for (const char *pressed : {"radiobuttonRightClick", "C_radiobuttonRightClick",
                                    "buttonProgramKavelo", "buttonOK"}) {
            if (auto *button = open->findChild<QAbstractButton *>(QLatin1String(pressed))) {
                button->click();
            }
        }
        return true;
    }

    /// Waits until no request and no box has come for longer than any wait of the program.
    void rest()
    {
        const auto events = [this] {
            return requests.size() + std::size_t(boxes.messages().size());
        };
        for (std::size_t before = events() + 1; before != events();) {
            before = events();
            runTicks(int((trouble.lateness + 1500ms) / TickPeriod) + TimeoutTicks);
        }
    }

    void expectTruth()
    {
        const QStringList &told = boxes.messages();
        const bool isFailureTold = told.contains(QStringLiteral("timeout")) ||
                                   told.contains(QStringLiteral("sending error"));
        const bool saysWritten = told.join(QString()).contains(QStringLiteral("successfully"));
        const bool saysDone = saysWritten || told.contains(Restored);
        const std::array<const SimulatedUnit *, 2> units{&unit, &next};
        bool isDone = false;
        for (std::size_t i = 0; i < units.size(); ++i) {
            const UnitMemory &memory = units.at(i)->memory();
            const UnitMemory wanted = commanded(m_before.at(i));
            isDone = isDone || memory == wanted;
            for (std::size_t pedal = 0; pedal < MaxPedals; ++pedal) {
                EXPECT_TRUE(memory.pedals.at(pedal) == m_before.at(i).pedals.at(pedal) ||
                            memory.pedals.at(pedal) == wanted.pedals.at(pedal))
                    << "pedal " << pedal << " has got foreign bytes";
            }
            EXPECT_TRUE(!bus::isPluggedIn(*units.at(i)) || showsUnit(*units.at(i)));
        }
        EXPECT_TRUE(bus::isPluggedIn(unit) || bus::isPluggedIn(next) || isBlank());
        EXPECT_TRUE(isDone || !saysDone || isFailureTold) << "what is told is not done";
        EXPECT_TRUE(!m_isWriteTaken || saysWritten || isFailureTold || isDialogShown() ||
                    !bus::isPluggedIn(unit))
            << "a write is dropped without a word";
    }

    /// A Standard dialog that is open must be for the unit that is held.
    void useDialog()
    {
        unit.setFault({});
        const SimulatedUnit &held = bus::isPluggedIn(unit) ? unit : next;
        if (shownDialog<SettingDialogViewController>() != nullptr) {
            const UnitMemory wanted = [&] {
                auto memory = held.memory();
                memory.pedals[0].record[0] = 2;
                return memory;
            }();
            EXPECT_TRUE(writeRightClick());
            rest();
            EXPECT_TRUE(bus::isPluggedIn(held) && held.memory() == wanted)
                << "a dialog without its unit";
        }
    }

    void cleanUp()
    {
        m_steps.clear();
        unit.setFault({});
        for (auto *open : window.findChildren<PedalSettingDialog *>()) {
            open->setEnabled(true);
            open->close();
        }
        while (auto *box = QApplication::activeModalWidget()) {
            box->close();
            runTicks(1);
        }
        bus::unplug(next);
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([this] { return isBlank(); }));
        runTicks(2);
    }

    const Command command = std::get<Command>(GetParam());
    const Trouble trouble = std::get<Trouble>(GetParam());
    SimulatedUnit next;

private:
    std::array<UnitMemory, 2> m_before;
    bool m_isWriteTaken = false;
    std::vector<std::pair<std::function<bool()>, std::function<void()>>> m_steps;
};

TEST_P(MomentTest, ACommandActsOnlyOnWhatTheWindowShowsOfTheUnitThatIsThere)
{
    QTimer steps;
    steps.callOnTimeout([this] { takeSteps(); });
    // The moments are 20 ms apart within the first second, in which most happens.
    const auto momentOf = [](int place) {
        return place < 50 ? place * 20ms : 1000ms + (place - 50) * 200ms;
    };
    int number = 0;
    for (int exchange = 0; exchange <= Exchanges; ++exchange) {
        for (int place = 0; momentOf(place) <= trouble.lastMoment; ++place) {
            if (number++ % std::get<int>(GetParam()) != 0) {
                continue;
            }
            const milliseconds moment = momentOf(place);
            SCOPED_TRACE(::testing::PrintToString(std::pair(exchange, moment.count())));
            steps.start(5);
            start(exchange);
            const milliseconds reading(exchange == 0 ? 400 : 0);
            if (exchange == 0) {
                QTimer::singleShot(reading, &steps, [this] { disturb(); });
            }
            QTimer::singleShot(reading + moment, &steps, [this] { act(); });
            QTest::qWait(int((reading + moment).count()) + 200);
            steps.start(50);
            rest();
            expectTruth();
            useDialog();
            cleanUp();
        }
    }
}

std::string nameOf(const ::testing::TestParamInfo<Parameter> &test)
{
    return std::string(CommandNames.at(std::get<Command>(test.param))) +
           std::get<Trouble>(test.param).name;
}

const auto Commands = ::testing::Values(Standard, Write, AdvancedOk, Restore, RestoreOk);
INSTANTIATE_TEST_SUITE_P(Short, MomentTest,
                         ::testing::Combine(Commands, ::testing::ValuesIn(Troubles),
                                            ::testing::Values(149)),
                         nameOf);
// Not among the tests that ctest runs.
INSTANTIATE_TEST_SUITE_P(Full, MomentTest,
                         ::testing::Combine(Commands, ::testing::ValuesIn(Troubles),
                                            ::testing::Values(1)),
                         nameOf);

} // namespace
} // namespace kavelo
