#include "AppDelegate.h"
#include "MenuClass.h"
#include "WindowTest.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <cstdlib>

namespace kavelo {
namespace {

/// What the program is waiting for when the user ends it.
enum class Wait { Nothing, Read, Write, Restore };
/// How the user ends it.
enum class End { QuitFromMenu, CloseWindow };

struct EndCase
{
    Wait wait;
    End end;
};

void PrintTo(const EndCase &end, std::ostream *out)
{
    *out << "wait " << int(end.wait) << " end " << int(end.end);
}

/// Each case runs in a process of its own, which must end with status 0.
class ProgramEndDeathTest : public WindowTest, public ::testing::WithParamInterface<EndCase>
{
protected:
    ProgramEndDeathTest()
        : menu(window.menuItems())
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
    }

    void startWaiting(Wait wait)
    {
        if (wait == Wait::Nothing) {
            return;
        }
        unit.setFault({.kind = FaultKind::DropReply, .exchange = wait == Wait::Read ? 4 : 0});
        if (wait == Wait::Write) {
            SettingEnabled = true;
            QTimer::singleShot(0, &window, &MainWindowViewController::SettingDialog_OK);
        } else if (wait == Wait::Restore) {
            boxes.answerWith(Qt::Key_Escape);
            menu.InitialStateToolStripMenuItem_Click();
        } else {
            DeviceDetectedChanged = true;
        }
    }

    void endWhileWaiting(const EndCase &end)
    {
        const bool waits = end.wait != Wait::Nothing;
        when([waits] { return Flag_send == waits; },
             [this, end] {
                 if (end.end == End::QuitFromMenu) {
                     window.menuItems().ExitToolStripMenuItem->trigger();
                 } else {
                     window.close();
                 }
             });
    }

    [[noreturn]] void run(const EndCase &end)
    {
        const AppDelegate delegate(*qApp);
        bus::plugIn(unit);
        if (!waitUntil([&] { return showsUnit(unit); })) {
            std::exit(2);
        }
        startWaiting(end.wait);
        endWhileWaiting(end);
        const int status = QApplication::exec();
        const qsizetype expectedBoxes = end.wait == Wait::Restore ? 1 : 0;
        const bool isSilent = boxes.messages().size() == expectedBoxes;
        std::exit(isSilent && !Flag_timeout ? status : 3);
    }

    MenuClass menu;
};

TEST_P(ProgramEndDeathTest, IsPromptAndSilentWithStatusZero)
{
    EXPECT_EXIT(run(GetParam()), ::testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(Ends, ProgramEndDeathTest,
                         ::testing::Values(EndCase{Wait::Nothing, End::QuitFromMenu},
                                           EndCase{Wait::Nothing, End::CloseWindow},
                                           EndCase{Wait::Read, End::QuitFromMenu},
                                           EndCase{Wait::Read, End::CloseWindow},
                                           EndCase{Wait::Write, End::QuitFromMenu},
                                           EndCase{Wait::Write, End::CloseWindow},
                                           EndCase{Wait::Restore, End::QuitFromMenu},
                                           EndCase{Wait::Restore, End::CloseWindow}));

TEST_F(ProgramEndDeathTest, AUnitOfMajorVersion3IsRefusedInWordsAndTheProgramEnds)
{
    const auto plugIn = [this](std::uint8_t major) {
        unit.memory().version = {major, 0, 0};
        boxes.reactWith([](QMessageBox &box) {
            const bool isRefused =
                box.informativeText() == QStringLiteral("This version is not supported");
            if (!isRefused) {
                std::exit(4);
            }
            QTest::keyClick(&box, Qt::Key_Return);
        });
        bus::plugIn(unit);
        std::exit(waitUntil([&] { return showsUnit(unit); }) ? 5 : 6);
    };
    EXPECT_EXIT(plugIn(3), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(plugIn(255), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(plugIn(2), ::testing::ExitedWithCode(5), "") << "the version before is accepted";
    unit.setFault({.kind = FaultKind::AnswerGarbage, .exchange = 1});
    EXPECT_EXIT(plugIn(2), ::testing::ExitedWithCode(0), "") << "garbage is a version like any";
}

} // namespace
} // namespace kavelo
