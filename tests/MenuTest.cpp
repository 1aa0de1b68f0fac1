#include "MenuClass.h"
#include "WindowTest.h"

#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

namespace kavelo {
namespace {

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

TEST_F(MenuTest, RestoresOnEscapeOrTheOkButtonOnly)
{
    // As a desktop without a theme has it.
    window.setStyleSheet(QStringLiteral("* { dialogbuttonbox-buttons-have-icons: 1 }"));
    for (const std::uint8_t pedals : {std::uint8_t{5}, std::uint8_t{3}}) {
        unit.memory().numberOfPedals = pedals;
        plugInAndWait();
        const UnitMemory before = unit.memory();
        const auto afterTab = [](Qt::Key key) {
            return [key](QMessageBox &box) {
                EXPECT_TRUE(box.button(QMessageBox::Ok)->icon().isNull());
                QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
                QTest::keyClick(box.button(QMessageBox::Ok), key);
            };
        };
        const std::vector<BoxWatcher::Reaction> refusals{
            [](QMessageBox &box) { QTest::keyClick(box.focusWidget(), Qt::Key_Return); },
            [](QMessageBox &box) { QTest::keyClick(box.focusWidget(), Qt::Key_Space); },
            afterTab(Qt::Key_Return), afterTab(Qt::Key_Enter),
            [](QMessageBox &box) { box.close(); }}; // by its frame, which answers neither button
        for (std::size_t i = 0; i < refusals.size(); ++i) {
            SCOPED_TRACE(i);
            boxes.reactWith(refusals[i]);
            const std::string output = printed([&] {
                chooseRestore();
                EXPECT_TRUE(waitUntil([&] { return boxes.isDone(); }));
                runTicks(1);
            });
            EXPECT_EQ(output, i + 1 < refusals.size() ? "Canceled\n" : "others:0\n");
            EXPECT_EQ(boxes.messages().last(), RestoreQuestion);
            EXPECT_TRUE(requests.empty());
        }

        pedals == 5 ? boxes.answerWith(Qt::Key_Escape) : boxes.reactWith(afterTab(Qt::Key_Space));
        boxes.answerWith(Qt::Key_Return);
        const std::string output = printed([&] {
            chooseRestore();
            EXPECT_TRUE(waitUntil([&] { return boxes.isDone(); }));
            runTicks(1);
        });
        EXPECT_EQ(output, "The selected Kavelo is returning to the initial state in time of "
                          "factory shipment.\nalert_OK_pushed\n");
        EXPECT_EQ(boxes.messages().last(), Restored);
        EXPECT_EQ(requests.size(), pedals + 1U);
        EXPECT_EQ(requests.back()[0], SET_PARAMETERS);
        EXPECT_EQ(unit.memory(), factoryState(before));
        EXPECT_TRUE(showsUnit(unit));
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
    }
}

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
