#include "AppDelegate.h"
#include "WindowTest.h"

#include <QApplication>
#include <QTimer>

#include <cstdlib>
#include <tuple>

namespace kavelo {
namespace {

using namespace std::chrono_literals;

/// What the program waits for when the user ends it.
enum Wait { Nothing, Dialog, Question, Read, Load, Write, Restore };

/// Each case runs in a process of its own, which must end with status 0. By the second parameter
/// the user presses Ctrl+Q in the active window (true) or closes the main window (false).
class ProgramEndDeathTest : public WindowTest,
                            public ::testing::WithParamInterface<std::tuple<Wait, bool>>
{
protected:
    ProgramEndDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    [[noreturn]] void run(Wait wait, bool quits)
    {
        const AppDelegate delegate(*qApp);
        QTimer::singleShot(20s, [] { std::_Exit(2); });
        plugInAndWait();
        unit.setFault({.kind = FaultKind::DropReply, .exchange = wait == Read ? 4 : 0});
        if (wait == Load) {
            unit.setFault({});
            unit.setReplyDelay(TickPeriod);
            when([this] { return Flag_send && standard(0)->isEnabled(); },
                 [this] {
                     SelectedPedalNo = 0;
                     window.SetPedal2Advanced_clicked();
                 });
        }
        if (wait == Read || wait == Load) {
            DeviceDetectedChanged = true;
        } else if (wait == Dialog) {
            window.buttonSetPedal0Standard_Clicked();
        } else if (wait == Question) {
            boxes.reactWith([](QMessageBox & /*box*/) {});
            restoreItem()->trigger();
        } else if (wait == Write) {
            SettingEnabled = true;
            QTimer::singleShot(0, &window, &MainWindowViewController::SettingDialog_OK);
        } else if (wait == Restore) {
            boxes.answerWith(Qt::Key_Escape);
            restoreItem()->trigger();
        }
        const auto hasCome = [this, wait] {
            return wait == Question
                       ? QApplication::activeModalWidget() != nullptr
                       : Flag_send == (wait >= Read) &&
                             (wait != Dialog || shownDialog() != nullptr) &&
                             (wait != Load || window.findChild<PedalSettingDialog *>() != nullptr);
        };
        when(hasCome, [this, quits] {
            QWidget *box = QApplication::activeModalWidget();
            QWidget *active = box != nullptr ? box : &window;
            quits ? QTest::keyClick(active, Qt::Key_Q, Qt::ControlModifier) : void(window.close());
        });
        const int status = QApplication::exec();
        const bool asks = wait == Question || wait == Restore;
        const bool isSilent = boxes.messages().size() == (asks ? 1 : 0);
        std::exit(isSilent && !Flag_timeout ? status : 3);
    }
};

TEST_P(ProgramEndDeathTest, IsPromptAndSilentWithStatusZero)
{
    EXPECT_EXIT(std::apply([this](auto... how) { run(how...); }, GetParam()),
                ::testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(Ends, ProgramEndDeathTest,
                         ::testing::Combine(::testing::Values(Nothing, Dialog, Question, Read, Load,
                                                              Write, Restore),
                                            ::testing::Bool()));

TEST_F(ProgramEndDeathTest, AUnitOfMajorVersion3IsRefusedInWordsAndTheProgramEnds)
{
    const auto plugIn = [this] {
        boxes.reactWith([](QMessageBox &box) {
            if (box.informativeText() != QStringLiteral("This version is not supported")) {
                std::exit(4);
            }
            BoxWatcher::press(box, Qt::Key_Return);
        });
        bus::plugIn(unit);
        std::exit(waitUntil([&] { return showsUnit(unit); }) ? 5 : 6);
    };
    // Each row: major version, fault, exit status. A version that is not supported is believed when
    // it comes twice in a row, because the first reply may have belonged to another request.
    const std::vector<std::tuple<std::uint8_t, Fault, int>> rows{
        {3, {}, 0},
        {255, {}, 0},
        {2, {}, 5},
        {2, {.kind = FaultKind::AnswerGarbage, .exchange = 1}, 5},
        {2, {.kind = FaultKind::AnswerGarbage, .request = {GET_VERSION_NUMBER}}, 6}};
    for (const auto &[major, fault, status] : rows) {
        unit.memory().version = {major, 0, 0};
        unit.setFault(fault);
        EXPECT_EXIT(plugIn(), ::testing::ExitedWithCode(status), "") << int{major};
    }
}

} // namespace
} // namespace kavelo
