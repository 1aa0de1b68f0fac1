#include "MenuClass.h"
#include "WindowTest.h"

#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

namespace kavelo {
namespace {

const auto RestoreQuestion =
    QStringLiteral("Settings of this Kavelo will be restored to the initial settings at factory "
                   "shipment. Is it OK with you? \n"
                   "Click [OK] to make the Kavelo return to the initial state. \n"
                   "Click [Cancel] to do nothing.");
const auto Restored =
    QStringLiteral("The settings for this Kavelo have been restored to the initial settings.");
const auto NotRestored =
    QStringLiteral("An error has occurred.\n"
                   "The settings for this Kavelo could not be restored to the initial settings.");

class MenuTest : public WindowTest
{
protected:
    MenuTest()
        : menu(window.menuItems())
    {
    }

    void plugInAndWait()
    {
        setFiveModes(unit);
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        requests.clear();
    }

    /// Opens the menu with its mnemonic and chooses an item, from 0, with the arrow keys.
    void choose(int item)
    {
        QTest::keyClick(window.menuBar(), Qt::Key_K, Qt::AltModifier);
        auto *popup = window.findChild<QMenu *>(QStringLiteral("menuKavelo"));
        window.menuBar()->setActiveAction(popup->menuAction());
        popup->setActiveAction(popup->actions().front());
        for (int i = 0; i < item; ++i) {
            QTest::keyClick(popup, Qt::Key_Down);
        }
        QTest::keyClick(popup, Qt::Key_Return);
    }
    void chooseRestore() { choose(0); }

    /// What the unit must hold after a restore: the factory's mode and first bytes, all others as
    /// they were.
    static UnitMemory factoryState(UnitMemory memory)
    {
        const std::array<std::vector<std::uint8_t>, MaxPedals> settings{
            {{SIMPLE_CLICK, 1},
             {SIMPLE_KEY_OUTPUT, 0, 0x28},
             {SIMPLE_CLICK, 2},
             {SIMPLE_KEY_OUTPUT, 0, 0x50},
             {SIMPLE_KEY_OUTPUT, 0, 0x4F}}};
        for (std::size_t pedal = 0; pedal < memory.numberOfPedals; ++pedal) {
            memory.pedals[pedal].mode = settings[pedal].front();
            std::copy(settings[pedal].begin() + 1, settings[pedal].end(),
                      memory.pedals[pedal].record.begin());
        }
        return memory;
    }

    MenuClass menu;
};

TEST_F(MenuTest, NamesItsItemsAndItsNotices)
{
    QStringList titles;
    for (const QAction *action :
         window.findChild<QMenu *>(QStringLiteral("menuKavelo"))->actions()) {
        titles << action->text();
    }
    titles.removeAll(QString());
    EXPECT_EQ(titles,
              QStringList({QStringLiteral("Restore to Initial Settings"),
                           QStringLiteral("Quick Start Guide"),
                           QStringLiteral("Version Information"), QStringLiteral("Quit Kavelo")}));
    EXPECT_EQ(window.menuItems().ExitToolStripMenuItem->shortcuts(),
              QKeySequence::keyBindings(QKeySequence::Quit));
    boxes.answerWith(Qt::Key_Return);
    choose(1);
    EXPECT_EQ(boxes.messages().last(),
              QStringLiteral("You can download the Quick Start Guide from the following.\n"
                             "https://www.marvode.example/kavelo/quick-start"));
    boxes.answerWith(Qt::Key_Return);
    choose(2);
    EXPECT_EQ(boxes.messages().last(),
              QStringLiteral("Mac App for Marvode Kavelo QX7\nVersion: 2.3.2"));
}

TEST_F(MenuTest, RestoresOnEscapeOnly)
{
    for (const std::uint8_t pedals : {std::uint8_t{5}, std::uint8_t{3}}) {
        unit.memory().numberOfPedals = pedals;
        plugInAndWait();
        const UnitMemory before = unit.memory();
        boxes.answerWith(Qt::Key_Return);
        chooseRestore();
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        runTicks(1);
        EXPECT_EQ(boxes.messages().last(), RestoreQuestion);
        EXPECT_TRUE(requests.empty());

        boxes.reactWith([](QMessageBox &box) { box.close(); });
        chooseRestore();
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        runTicks(1);
        EXPECT_TRUE(requests.empty()) << "closing the question's frame answers neither button";

        boxes.answerWith(Qt::Key_Escape);
        boxes.answerWith(Qt::Key_Return);
        chooseRestore();
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        EXPECT_EQ(boxes.messages().last(), Restored);
        EXPECT_EQ(requests.size(), pedals + 1U);
        EXPECT_EQ(requests.back()[0], SET_PARAMETERS);
        EXPECT_EQ(unit.memory(), factoryState(before));
        EXPECT_TRUE(showsUnit(unit));
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
    }
}

struct RestoreTrouble
{
    FaultKind fault;
    int exchange;
    QStringList boxes;
};

class RestoreTroubleTest : public MenuTest, public ::testing::WithParamInterface<RestoreTrouble>
{
};

TEST_P(RestoreTroubleTest, IsToldInOrderAndLeavesWholeRecordsAndAWorkingWindow)
{
    const RestoreTrouble &trouble = GetParam();
    plugInAndWait();
    const UnitMemory before = unit.memory();
    const UnitMemory after = factoryState(before);
    unit.setLateness(std::chrono::milliseconds(4500));
    unit.setFault({.kind = trouble.fault, .exchange = trouble.exchange});
    boxes.answerWith(Qt::Key_Escape);
    for (qsizetype i = 1; i < trouble.boxes.size(); ++i) {
        boxes.answerWith(Qt::Key_Return);
    }
    chooseRestore();
    ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
    runTicks(2);
    EXPECT_EQ(boxes.messages(), trouble.boxes);
    for (std::size_t pedal = 0; pedal < MaxPedals; ++pedal) {
        const PedalMemory &memory = unit.memory().pedals[pedal];
        EXPECT_TRUE(memory == before.pedals[pedal] || memory == after.pedals[pedal]);
    }

    unit.setFault({});
    if (!bus::isPluggedIn(unit)) {
        EXPECT_TRUE(isBlank());
        bus::plugIn(unit);
    }
    ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
    boxes.answerWith(Qt::Key_Escape);
    boxes.answerWith(Qt::Key_Return);
    chooseRestore();
    ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
    EXPECT_EQ(boxes.messages().last(), Restored);
    EXPECT_EQ(unit.memory(), after);
}

// Exchanges 1 to 5 send the pedals' records, exchange 6 the parameters.
std::vector<RestoreTrouble> restoreTroubles()
{
    std::vector<RestoreTrouble> troubles;
    const auto box = [](FaultKind fault) {
        return fault == FaultKind::RefuseSend ? QStringLiteral("sending error")
                                              : QStringLiteral("timeout");
    };
    for (const FaultKind fault :
         {FaultKind::RefuseSend, FaultKind::DropReply, FaultKind::AnswerLate, FaultKind::Unplug}) {
        for (int exchange = 1; exchange <= 6; ++exchange) {
            const bool isRestored = exchange < 6 && fault != FaultKind::Unplug;
            troubles.push_back(
                {fault,
                 exchange,
                 {RestoreQuestion, box(fault), isRestored ? Restored : NotRestored}});
        }
    }
    return troubles;
}

INSTANTIATE_TEST_SUITE_P(Faults, RestoreTroubleTest, ::testing::ValuesIn(restoreTroubles()));

TEST_F(MenuTest, AQuestionAboutAUnitThatGoesIsTakenDownAndTheNextUnitIsNotRestored)
{
    SimulatedUnit next;
    plugInAndWait();
    const UnitMemory before = next.memory();
    boxes.reactWith([&](QMessageBox & /*box*/) {
        bus::unplug(unit);
        bus::plugIn(next);
    });
    chooseRestore();
    ASSERT_TRUE(waitUntil([&] { return boxes.isDone() && showsUnit(next); }));
    runTicks(2);
    EXPECT_EQ(next.memory(), before);
    EXPECT_EQ(boxes.messages(), QStringList(RestoreQuestion));
}

TEST_F(MenuTest, AUnitPluggedInDuringARestoreIsReadAndNotRestored)
{
    SimulatedUnit next;
    setFiveModes(next);
    const UnitMemory before = next.memory();
    plugInAndWait();
    unit.setFault({.kind = FaultKind::Unplug, .exchange = 3});
    when([&] { return isBlank(); }, [&] { bus::plugIn(next); });
    boxes.answerWith(Qt::Key_Escape);
    boxes.answerWith(Qt::Key_Return);
    chooseRestore();
    ASSERT_TRUE(waitUntil([&] { return boxes.isDone() && showsUnit(next); }));
    EXPECT_EQ(boxes.messages(), QStringList({RestoreQuestion, NotRestored}));
    EXPECT_EQ(next.memory(), before);
}

TEST_F(MenuTest, ARestoreAskedForDuringAReadEndsInARightPicture)
{
    setFiveModes(unit);
    unit.setReplyDelay(std::chrono::milliseconds(40));
    when([&] { return standard(1)->isEnabled(); }, [&] { chooseRestore(); });
    boxes.answerWith(Qt::Key_Escape);
    boxes.answerWith(Qt::Key_Return);
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return boxes.isDone() && showsUnit(unit); }));
    EXPECT_EQ(unit.memory().pedals[4].mode, SIMPLE_KEY_OUTPUT);
}

} // namespace
} // namespace kavelo
