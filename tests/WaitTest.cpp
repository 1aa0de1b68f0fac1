#include "AdvancedSettingDialogViewController.h"
#include "MenuClass.h"
#include "WindowTest.h"

#include <QAction>

namespace kavelo {
namespace {

using std::chrono::milliseconds;

constexpr int ReadExchanges = 12; // of a unit set up by setFiveModes()

std::uint8_t commandOf(const hid::Report &request)
{
    return request[0];
}

/// What must not slip into the waits of a read, a write or a restore.
class WaitTest : public WindowTest
{
protected:
    WaitTest()
        : WindowTest(milliseconds(20))
        , menu(window.menuItems())
    {
        setFiveModes(unit);
        unit.memory().pedals[2].record[0] = 1; // the dialog can show it
        unit.memory().pedals[4] = {.mode = SIMPLE_CLICK, .record = {1}};
    }

    void plugInAndWait()
    {
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        requests.clear();
    }

    /// Does something as soon as the unit has got a number of requests and before it answers.
    void whenRequested(std::size_t count, const std::function<void()> &action)
    {
        unit.setReplyDelay(milliseconds(100));
        when([this, count] { return requests.size() >= count; },
             [this, action] {
                 unit.setReplyDelay(milliseconds(1));
                 action();
             });
    }

    void openAdvancedDialog()
    {
        SelectedPedalNo = 2;
        window.SetPedal2Advanced_clicked();
    }
    QAction *restoreItem() { return window.menuItems().InitialStateToolStripMenuItem.get(); }

    MenuClass menu;
};

TEST_F(WaitTest, TheAdvancedDialogsRequestSpoilsNoExchangeOfARead)
{
    for (std::size_t exchange = 1; exchange <= ReadExchanges; ++exchange) {
        SCOPED_TRACE(exchange);
        requests.clear();
        whenRequested(exchange, [this] { openAdvancedDialog(); });
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        EXPECT_EQ(requests.size(), ReadExchanges + 1U) << "one look is enough";
        shownDialog<AdvancedSettingDialogViewController>()->close();
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
    }
}

TEST_F(WaitTest, AWriteCannotBeCancelledAndNamesItsOwnPedal)
{
    plugInAndWait();
    for (std::size_t exchange : {1U, 2U}) {
        const auto selectAnother = [this] {
            window.buttonSetPedal4Standard_Clicked();
            EXPECT_EQ(window.findChildren<SettingDialogViewController *>().size(), 1);
            SelectedPedalNo = 1;
            PedalName = QStringLiteral("Left Pedal");
        };
        requests.clear();
        whenRequested(exchange, [&] {
            QTest::keyClick(dialog(), Qt::Key_Escape);
            click(dialog()->findChild<QWidget *>(QStringLiteral("buttonCancel")));
            dialog()->close();
            EXPECT_NE(dialog(), nullptr);
            EXPECT_FALSE(standard(4)->isEnabled());
            runTicks(1);
            EXPECT_FALSE(restoreItem()->isEnabled());
            InitialState = true;
            openAdvancedDialog();
            selectAnother();
        });
        window.buttonSetPedal2Standard_Clicked();
        selectAnother();
        boxes.answerWith(Qt::Key_Return);
        writeClick(2, exchange == 1 ? QStringLiteral("radiobuttonRightClick")
                                    : QStringLiteral("radiobuttonCenterClick"));
        EXPECT_EQ(boxes.messages().last(),
                  QStringLiteral("The settings of the Right Pedal have finished successfully."));
        EXPECT_EQ(unit.memory().pedals[2].record[0], 2 * exchange);
        EXPECT_EQ(dialog(), nullptr);
        EXPECT_EQ(window.focusWidget(), standard(2));
        EXPECT_EQ(requests.size(), 3U) << "record, parameters and the Advanced dialog's own";
        shownDialog<AdvancedSettingDialogViewController>()->close();
        runTicks(2);
        EXPECT_TRUE(showsUnit(unit));
    }
    EXPECT_EQ(boxes.messages().size(), 2);
}

TEST_F(WaitTest, TheSecondLookLetsAWriteEndFirst)
{
    unit.setFault({.kind = FaultKind::DropReply, .exchange = 3});
    boxes.answerWith(Qt::Key_Return);
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return litRows().size() == MaxPedals; }));
    boxes.answerWith(Qt::Key_Return);
    writeClick(2, QStringLiteral("radiobuttonRightClick"));
    EXPECT_EQ(boxes.messages().size(), 2) << "timeout, success";
    const auto parameters = std::ranges::find(requests, SET_PARAMETERS, commandOf);
    ASSERT_NE(parameters, requests.end());
    EXPECT_EQ(commandOf(*(parameters - 1)), SET_OUTPUT_MODE_AND_DATA) << "nothing in between";
    EXPECT_EQ(unit.memory().pedals[2].record[0], 2);
    EXPECT_TRUE(waitUntil([&] { return showsUnit(unit); }));
}

TEST_F(WaitTest, AUnitThatAnswersEverythingTwiceIsNotReadForEver)
{
    unit.setFault({.kind = FaultKind::AnswerTwice});
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return requests.size() >= 2; }));
    runTicks(30);
    const std::size_t asked = requests.size();
    runTicks(30);
    EXPECT_EQ(requests.size(), asked);
}

TEST_F(WaitTest, ARestoreIsNotBrokenOffByAButton)
{
    plugInAndWait();
    const UnitMemory before = unit.memory();
    whenRequested(2, [this] {
        EXPECT_FALSE(standard(4)->isEnabled());
        window.buttonSetPedal4Standard_Clicked();
        EXPECT_EQ(dialog(), nullptr);
        runTicks(1);
        EXPECT_FALSE(restoreItem()->isEnabled());
    });
    boxes.answerWith(Qt::Key_Escape);
    boxes.answerWith(Qt::Key_Return);
    restoreItem()->trigger();
    ASSERT_TRUE(waitUntil([&] { return boxes.isDone() && showsUnit(unit); }));
    EXPECT_EQ(boxes.messages().last(), Restored);
    EXPECT_EQ(unit.memory(), factoryState(before));
    EXPECT_TRUE(standard(4)->isEnabled());
}

/// What a unit never answers, and what is left of it after the second look.
struct MuteCase
{
    std::vector<std::uint8_t> request;
    int pedals; ///< 0: none, the window is blank
};

TEST_F(WaitTest, WhatFailsTwiceIsToldOnceAndCostsNoMoreThanItMust)
{
    SimulatedUnit other;
    const std::vector<MuteCase> cases{
        {{GET_VERSION_NUMBER}, 0},
        {{GET_NUMBER_OF_PEDALS}, 0},
        {{GET_ADDITIONAL_DATA, 1, 2}, 0},
        {{GET_OUTPUT_MODE_AND_DATA, 1}, 5},
    };
    for (const MuteCase &mute : cases) {
        SCOPED_TRACE(int{mute.request[0]});
        bus::plugIn(other);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(other); }));
        bus::unplug(other);

        const qsizetype told = boxes.messages().size();
        boxes.answerWith(Qt::Key_Return);
        unit.setFault({.kind = FaultKind::DropReply, .request = mute.request});
        requests.clear();
        bus::plugIn(unit);
        const auto isSecondLook = [&] {
            return std::ranges::count(requests, GET_VERSION_NUMBER, commandOf) >= 2;
        };
        ASSERT_TRUE(waitUntil([&] {
            return isSecondLook() && !Flag_send && int(litRows().size()) == mute.pedals &&
                   isBlank() == (mute.pedals == 0) && !window.plugNPlay.isReplyOwed();
        }));
        const std::size_t asked = requests.size();
        runTicks(5);
        EXPECT_EQ(requests.size(), asked) << "there is no third look";
        EXPECT_EQ(boxes.messages().mid(told), QStringList(QStringLiteral("timeout")));
        if (mute.pedals > 0) {
            boxes.answerWith(Qt::Key_Return);
            writeClick(2, QStringLiteral("radiobuttonRightClick"));
            EXPECT_EQ(unit.memory().pedals[2].record[0], 2);
        } else if (mute.request[0] != GET_ADDITIONAL_DATA) {
            // Nothing that the other unit has told counts for this one.
            const UnitMemory before = unit.memory();
            boxes.answerWith(Qt::Key_Escape);
            boxes.answerWith(Qt::Key_Return);
            restoreItem()->trigger();
            ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
            EXPECT_EQ(boxes.messages().last(), Restored);
            EXPECT_EQ(requests.size(), asked + 1) << "the parameters";
            EXPECT_EQ(unit.memory(), before);
        }
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
    }
}

} // namespace
} // namespace kavelo
