#include "AdvancedSettingDialogViewController.h"
#include "WindowTest.h"

#include <tuple>

namespace kavelo {
namespace {

using std::chrono::milliseconds;

/// What must not slip into the waits of a read, a write or a restore.
class WaitTest : public WindowTest
{
protected:
    WaitTest()
    {
        setFiveModes(unit);
        unit.memory().pedals[4] = {.mode = SIMPLE_CLICK, .record = {1}};
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
};

TEST_F(WaitTest, TheAdvancedDialogsRequestSpoilsNoExchangeOfARead)
{
    for (std::size_t exchange = 1; exchange <= ReadExchanges; ++exchange) {
        SCOPED_TRACE(exchange);
        requests.clear();
        whenRequested(exchange, [this] { openAdvancedDialog(); });
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        EXPECT_EQ(requests.size(), ReadExchanges + 1) << "one look is enough";
        EXPECT_EQ(Flag_send, exchange == ReadExchanges) << "nothing ends a one-way request";
        shownDialog<AdvancedSettingDialogViewController>()->close();
        unplugAndWait();
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
            EXPECT_FALSE(standard(4)->isEnabled());
            runTicks(2);
            EXPECT_NE(dialog(), nullptr);
            EXPECT_FALSE(restoreItem()->isEnabled());
            InitialState = true;
            openAdvancedDialog();
            window.SettingDialog_OK(); // as the Advanced dialog does
            selectAnother();
        });
        CloseStandardSetting = true; // as a dialog has left it that went as its unit did
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
}

TEST_F(WaitTest, TheSecondLookLetsAWriteEndFirst)
{
    unit.setFault({.kind = FaultKind::DropReply, .exchange = 3});
    boxes.answerWith(Qt::Key_Return);
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return litRows() == MaxPedals; }));
    // The look waits until the dropped reply can't come any more; the write lasts longer.
    unit.setReplyDelay(25 * TickPeriod);
    boxes.answerWith(Qt::Key_Return);
    writeClick(2, QStringLiteral("radiobuttonRightClick"));
    unit.setReplyDelay({});
    EXPECT_EQ(boxes.messages().size(), 2) << "timeout, success";
    const auto parameters =
        std::ranges::find(requests, SET_PARAMETERS, [](const auto &request) { return request[0]; });
    ASSERT_NE(parameters, requests.end());
    EXPECT_EQ((*(parameters - 1))[0], SET_OUTPUT_MODE_AND_DATA) << "nothing in between";
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

TEST_F(WaitTest, WhatFailsTwiceIsToldOnceAndCostsNoMoreThanItMust)
{
    unit.setReplyDelay(2 * TickPeriod);
    // What a unit never takes or answers, how many pedals are shown after the second look, and how
    // many requests the looks cost. One is repeated: its reply might have been the missing one.
    using Row = std::tuple<FaultKind, std::vector<std::uint8_t>, int, std::size_t>;
    for (const auto &[fault, request, pedals, asked] :
         {Row{FaultKind::DropReply, {GET_OUTPUT_MODE_AND_DATA, 2}, 5, 26},
          Row{FaultKind::DropReply, {GET_VERSION_NUMBER}, 0, 2},
          Row{FaultKind::RefuseSend, {GET_NUMBER_OF_PEDALS}, 0, 4},
          Row{FaultKind::DropReply, {GET_ADDITIONAL_DATA, 1, 2}, 0, 14}}) {
        SCOPED_TRACE(int{request[0]});
        const bool isTimeout = fault == FaultKind::DropReply;
        const qsizetype told = boxes.messages().size();
        boxes.answerWith(Qt::Key_Return);
        unit.setFault({.kind = fault, .request = request});
        requests.clear();
        const std::string output = printed([&] {
            bus::plugIn(unit);
            runTicks(200);
        });
        EXPECT_EQ(output, isTimeout ? "alert_OK_pushed\ntimeout\ntimeout\n" : "alert_OK_pushed\n");
        EXPECT_EQ(requests.size(), asked) << "there is no third look";
        EXPECT_EQ(
            boxes.messages().mid(told),
            QStringList(isTimeout ? QStringLiteral("timeout") : QStringLiteral("sending error")));
        EXPECT_EQ(Flag_timeout, isTimeout && pedals == 0);
        // Nothing that was read before counts.
        EXPECT_EQ(NumberOfPedals, request[0] == GET_ADDITIONAL_DATA ? MaxPedals : pedals);
        if (pedals > 0) {
            boxes.answerWith(Qt::Key_Return);
            writeClick(4, QStringLiteral("radiobuttonRightClick"));
            EXPECT_EQ(unit.memory().pedals[4].record[0], 2);
        }
        unplugAndWait();
    }
}

} // namespace
} // namespace kavelo
