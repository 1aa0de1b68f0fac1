#include "AppDelegate.h"
#include "WindowTest.h"

#include <QApplication>
#include <QTimer>

#include <cstdlib>
#include <tuple>

namespace kavelo {
namespace {

using namespace std::chrono_literals;

/// What the program is waiting for when the user ends it.
enum Wait { Nothing, Read, Write, Restore };

/// Each case runs in a process of its own, which must end with status 0. Whether the user quits
/// from the menu or else closes the window is the second parameter.
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
        if (wait == Read) {
            DeviceDetectedChanged = true;
        } else if (wait == Write) {
            SettingEnabled = true;
            QTimer::singleShot(0, &window, &MainWindowViewController::SettingDialog_OK);
        } else if (wait == Restore) {
            boxes.answerWith(Qt::Key_Escape);
            restoreItem()->trigger();
        }
        QAction *const quit = window.menuItems().ExitToolStripMenuItem;
        when([wait] { return Flag_send == (wait != Nothing); },
             [this, quit, quits] { quits ? quit->trigger() : void(window.close()); });
        const int status = QApplication::exec();
        const bool isSilent = boxes.messages().size() == (wait == Restore ? 1 : 0);
        std::exit(isSilent && !Flag_timeout ? status : 3);
    }
};

TEST_P(ProgramEndDeathTest, IsPromptAndSilentWithStatusZero)
{
    EXPECT_EXIT(std::apply([this](auto... how) { run(how...); }, GetParam()),
                ::testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(Ends, ProgramEndDeathTest,
                         ::testing::Combine(::testing::Values(Nothing, Read, Write, Restore),
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
    // Garbage is a version like any, but the first one may have been another request's reply.
    const std::vector<std::tuple<std::uint8_t, Fault, int>> rows{
        {3, {}, 0},
        {255, {}, 0},
        {2, {}, 5},
        {2, {.kind = FaultKind::AnswerGarbage, .exchange = 1}, 5},
        {2, {.kind = FaultKind::AnswerGarbage, .request = {GET_VERSION_NUMBER}}, 0}};
    for (const auto &[major, fault, status] : rows) {
        unit.memory().version = {major, 0, 0};
        unit.setFault(fault);
        EXPECT_EXIT(plugIn(), ::testing::ExitedWithCode(status), "") << int{major};
    }
}

} // namespace
} // namespace kavelo
