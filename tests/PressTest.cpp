#include "PressGuard.h"
#include "WindowTest.h"

#include <QMessageBox>

#include <tuple>

namespace kavelo {
namespace {

/// Hands that hold a key for long or press twice, and assistive technology, which does neither.
class PressTest : public WindowTest
{
protected:
    PressTest()
    {
        unit.memory().pedals[0] = {.mode = SIMPLE_CLICK, .record = {1}};
        plugInAndWait();
        settle();
        standard(0)->setFocus();
    }

    QWidget *focus()
    {
        QWidget *active = QApplication::activeWindow();
        active = active == nullptr ? &window : active;
        return active->focusWidget() != nullptr ? active->focusWidget() : active;
    }
    /// A key as X11 reports it that is held down until `time` (ms) has passed: the first repeat
    /// comes after 660 ms, and the repeats are not marked as such, but have the time of the release
    /// before them.
    void hold(Qt::Key key, int time)
    {
        QTest::keyPress(focus(), key);
        for (quint64 passed = 660; passed < quint64(time); passed += 40) {
            QTest::qWait(passed == 660 ? 660 : 40);
            for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
                QKeyEvent event(type, key, {});
                event.setTimestamp(passed);
                QApplication::sendEvent(focus(), &event);
            }
        }
        QTest::keyRelease(focus(), key);
    }
    void doublePress(Qt::Key key)
    {
        for (int i = 0; i < 2; ++i) {
            QTest::keyClick(focus(), key);
            QTest::qWait(150);
        }
    }
    QMessageBox *box() { return shownDialog<QMessageBox>(); }
};

TEST_F(PressTest, OnePressOpensAWindowOrAnswersItAndTheNextOneAfterAMomentDoesTheRest)
{
    boxes.reactWith([&](QMessageBox & /*box*/) {
        settle();
        hold(Qt::Key_Return, 1500);
    });
    using Press = std::function<void()>;
    // What is pressed, and whether the dialog is there afterwards.
    const std::vector<std::tuple<const char *, Press, bool>> presses{
        {"held", [&] { hold(Qt::Key_Return, 2500); }, true},
        {"Escape held", [&] { hold(Qt::Key_Escape, 1500); }, false},
        {"twice", [&] { doublePress(Qt::Key_Enter); }, true},
        {"writes", [&] { QTest::keyClick(focus(), Qt::Key_Return); }, false},
        {"writes again", [&] { QTest::keyClick(focus(), Qt::Key_Return); }, true},
    };
    for (const auto &[name, press, opensDialog] : presses) {
        SCOPED_TRACE(name);
        settle();
        press();
        QTest::qWait(400);
        ASSERT_EQ(isDialogShown(), opensDialog);
    }
    EXPECT_EQ(requests.size(), 2U) << "one write";
}

TEST_F(PressTest, ANewPressIsMeantHalfASecondAfterAWindowHasCome)
{
    OutputMode[0] = SIMPLE_DOUBLE_CLICK; // beyond the Standard: the question comes first
    boxes.reactWith([](QMessageBox & /*box*/) {});
    QTest::keyPress(window.windowHandle(), Qt::Key_Return);
    QTest::keyRelease(window.windowHandle(), Qt::Key_Return); // kept from a blocked window
    ASSERT_NE(box(), nullptr);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        QTest::keyClick(box()->windowHandle(), key);
    }
    // What is there after one more Escape.
    std::vector<std::string> shown;
    for (int i = 0; i < 5; ++i) {
        QTest::qWait(i == 0 ? 0 : 285);
        QTest::keyClick(focus()->window()->windowHandle(), Qt::Key_Escape);
        shown.emplace_back(box() != nullptr ? "box" : isDialogShown() ? "dialog" : "");
    }
    EXPECT_EQ(shown, (std::vector<std::string>{"box", "box", "dialog", "dialog", ""}));
}

TEST_F(PressTest, ASecondClickIsNoneHoweverLateItIsHandled)
{
    quint64 stamp = 100000;
    const auto clickAtOnce = [&](QWidget *button) {
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const QPointF at(10, 10);
            QMouseEvent event(type, at, button->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                              {});
            event.setTimestamp(stamp);
            QApplication::sendEvent(button, &event);
        }
    };
    clickAtOnce(standard(0));
    QWidget *const cancel = control("Cancel");
    stamp += 150;
    clickAtOnce(cancel);
    EXPECT_TRUE(isDialogShown()) << "the window has only just come";
    QTest::qWait(2000); // the machine is busy
    stamp += 150;
    clickAtOnce(cancel);
    EXPECT_TRUE(isDialogShown()) << "the press comes late, but was a quick one";
    QTest::qWait(2000);
    stamp += 2000;
    clickAtOnce(cancel);
    EXPECT_FALSE(isDialogShown());
}

TEST_F(PressTest, AnActionOfAssistiveTechnologyIsTakenAtOnceAndWaitsForNobody)
{
    const auto press = [](QObject *button) {
        assistance(button)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    const auto leave = [](QMessageBox & /*box*/) {};
    OutputMode[0] = SIMPLE_DOUBLE_CLICK;
    boxes.reactWith(leave);
    press(standard(0));
    ASSERT_TRUE(waitUntil([&] { return box() != nullptr; })) << "the question";
    EXPECT_FALSE(isDialogShown());
    press(box()->button(QMessageBox::Ok));
    ASSERT_TRUE(waitUntil([&] { return isDialogShown(); }));
    QTest::qWait(PressesTakenAfter);
    window.activateWindow();
    ASSERT_TRUE(waitUntil([&] { return window.isActiveWindow(); }));
    press(standard(1));
    EXPECT_TRUE(waitUntil([&] { return dialog()->isActiveWindow(); })) << "the one that is open";
    control<QAbstractButton>("RightClick")->click();
    boxes.reactWith([&](QMessageBox &success) { press(success.button(QMessageBox::Ok)); });
    press(control("ProgramKavelo"));
    EXPECT_TRUE(isDialogShown()) << "the action waits for the user";
    ASSERT_TRUE(waitUntil([&] { return !isDialogShown(); }));

    // A notice that is opened within a read does not keep it up.
    boxes.reactWith(leave);
    unit.setReplyDelay(std::chrono::milliseconds(50));
    when([&] { return Flag_send; },
         [&] { window.menuItems().VersionInformationToolStripMenuItem->trigger(); });
    DeviceDetectedChanged = true;
    ASSERT_TRUE(waitUntil([&] { return box() != nullptr && !Flag_send && showsUnit(unit); }));
    EXPECT_EQ(printed([&] {
                  press(box()->button(QMessageBox::Ok));
                  EXPECT_TRUE(waitUntil([&] { return box() == nullptr; }));
              }),
              "alert_OK_pushed\n");
}

} // namespace
} // namespace kavelo
