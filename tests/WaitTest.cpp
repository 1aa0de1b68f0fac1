#include "AdvancedSettingDialogViewController.h"
#include "WindowTest.h"

#include <QMessageBox>
#include <QRadioButton>

#include <tuple>

namespace kavelo {
namespace {

using namespace std::chrono_literals;
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

    void openAdvancedDialog(int pedal = 2)
    {
        SelectedPedalNo = pedal;
        window.SetPedal2Advanced_clicked();
    }
};

TEST_F(WaitTest, TheAdvancedDialogsRequestSpoilsNoExchangeOfARead)
{
    for (std::size_t exchange = 4; exchange <= ReadExchanges; ++exchange) {
        SCOPED_TRACE(exchange);
        requests.clear();
        whenRequested(exchange, [this] {
            openAdvancedDialog(0);
            openAdvancedDialog(0); // while the first one loads
            EXPECT_EQ(window.findChildren<PedalSettingDialog *>().size(), 1);
        });
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
        const auto selectAnother = [] {
            SelectedPedalNo = 1;
            PedalName = QStringLiteral("Left Pedal");
        };
        requests.clear();
        whenRequested(exchange, [&] {
            QTest::keyClick(dialog(), Qt::Key_Escape);
            click("Cancel");
            dialog()->close();
            runTicks(2);
            EXPECT_EQ(dialog()->cursor().shape(), Qt::BusyCursor);
            EXPECT_FALSE(standard(4)->isEnabled() || restoreItem()->isEnabled());
            openAdvancedDialog();
            window.SettingDialog_OK(); // as the Advanced dialog does
            window.buttonSetPedal4Standard_Clicked();
            EXPECT_EQ(window.findChildren<PedalSettingDialog *>().size(), 1);
            selectAnother();
        });
        window.buttonSetPedal2Standard_Clicked();
        selectAnother();
        boxes.reactWith([&](QMessageBox &box) {
            EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor) << "the program waits for the user";
            BoxWatcher::press(box, Qt::Key_Return);
        });
        writeClick(2, exchange == 1 ? "RightClick" : "CenterClick");
        EXPECT_EQ(boxes.messages().last(),
                  QStringLiteral("The settings of the Right Pedal have finished successfully."));
        EXPECT_EQ(unit.memory().pedals[2].record[0], 2 * exchange);
        EXPECT_EQ(requests.size(), 2U) << "record and parameters";
        runTicks(2);
        EXPECT_TRUE(standard(2)->hasFocus()) << "where the user goes on";
        EXPECT_TRUE(showsUnit(unit));
    }
}

TEST_F(WaitTest, ADialogKeepsItsEditThroughARestore)
{
    plugInAndWait();
    openStandard(2);
    auto *const choice = control<QRadioButton>("DoubleClick");
    auto *const writing = control<QPushButton>("ProgramKavelo");
    click(choice);
    writing->setFocus();
    const auto tryToWrite = [&] {
        writing->click();
        QCoreApplication::sendPostedEvents(); // what writes does so from the event loop
        EXPECT_TRUE(isDialogShown());
        EXPECT_EQ(OutputMode[2], SIMPLE_CLICK);
    };
    for (int i = 0; i < 2; ++i) { // the question and the notice
        boxes.reactWith([&](QMessageBox &box) {
            tryToWrite();
            box.button(QMessageBox::Ok)->click();
        });
    }
    whenRequested(2, tryToWrite);
    restoreItem()->trigger();
    tryToWrite();
    ASSERT_TRUE(waitUntil([&] { return boxes.isDone() && dialog()->isEnabled(); }));
    EXPECT_EQ(boxes.messages().last(), Restored);
    EXPECT_TRUE(choice->isChecked());
    EXPECT_EQ(dialog()->focusWidget(), writing);
    boxes.answerWith(Qt::Key_Return);
    settle();
    click(writing);
    EXPECT_EQ(unit.memory().pedals[2].mode, SIMPLE_DOUBLE_CLICK);
    EXPECT_TRUE(showsUnit(unit));
}

TEST_F(WaitTest, RepliesThatShiftAllOthersAreNoticedAndTheUnitIsReadUntilItIsRight)
{
    unit.setReplyDelay(milliseconds(40));
    for (const milliseconds lateness :
         {ReplyTimeout + 900ms, ReplyTimeout + 3200ms, 8700ms, 11000ms}) {
        unit.setLateness(lateness);
        for (const int exchange : {1, 2, 4, 7, 12}) {
            SCOPED_TRACE(::testing::PrintToString(std::pair(lateness.count(), exchange)));
            unit.setFault({.kind = FaultKind::AnswerLate, .exchange = exchange});
            boxes.answerWith(Qt::Key_Return); // timeout
            requests.clear();
            bus::plugIn(unit);
            runTicks(150);
            EXPECT_TRUE(showsUnit(unit));
            EXPECT_TRUE(lateness > ReplyTimeout + ReplyLateness ||
                        requests.size() <= 2 * ReadExchanges)
                << "a reply that is a little late is nobody else's";
            unplugAndWait();
        }
    }
    unit.setReplyDelay({});
    unit.setFault({.kind = FaultKind::AnswerTwice});
    requests.clear();
    bus::plugIn(unit);
    runTicks(300);
    const std::size_t asked = requests.size();
    runTicks(300);
    EXPECT_EQ(requests.size(), asked)
        << "a unit that answers everything twice is not read for ever";
    EXPECT_LE(asked, 4 * ReadExchanges);
}

TEST_F(WaitTest, WhatFailsTwiceIsToldOnceAndCostsNoMoreThanItMust)
{
    unit.setReplyDelay(2 * TickPeriod);
    // What a unit never takes or answers, how many pedals are shown after the second look, and how
    // many requests both looks cost.
    using Row = std::tuple<FaultKind, std::vector<std::uint8_t>, int, std::size_t>;
    for (const auto &[fault, request, pedals, asked] :
         {Row{FaultKind::DropReply, {GET_OUTPUT_MODE_AND_DATA, 2}, 5, 24},
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
            writeClick(4, "RightClick");
            EXPECT_EQ(unit.memory().pedals[4].record[0], 2);
        }
        unplugAndWait();
    }
}

} // namespace
} // namespace kavelo
