#include "ApplicationIcon.h"
#include "ProgramStyle.h"
#include "WindowTest.h"

#include <QMenu>

namespace kavelo {
namespace {

class MenuTest : public WindowTest
{
protected:
    /// Triggers the item. Returns what is printed until all expected boxes are answered.
    std::string choose(QAction &item)
    {
        return printed([&] {
            item.trigger();
            EXPECT_TRUE(waitUntil(
                [&] { return boxes.isDone() && QApplication::activeModalWidget() == nullptr; }));
            runTicks(1);
        });
    }
};

TEST_F(MenuTest, NamesItsItemsAndItsNotices)
{
    const auto items = find<QMenu>("menuKavelo")->actions();
    QStringList titles;
    for (const QAction *item : items) {
        titles << item->text();
    }
    titles.removeAll(QString());
    EXPECT_EQ(titles.join(u','), QStringLiteral("Restore to Initial Settings,Quick Start Guide,"
                                                "Version Information,Quit Kavelo"));
    EXPECT_EQ(window.menuItems().ExitToolStripMenuItem->shortcut(),
              QKeySequence(Qt::CTRL | Qt::Key_Q));
    plugInAndWait();
    openStandard(0);
    boxes.reactWith([this](QMessageBox &box) {
        EXPECT_EQ(box.parentWidget(), dialog());
        settle();
        dialog()->setEnabled(false); // as while something is sent
        QTest::keyClick(required(box.focusWidget(), "The focus"), Qt::Key_Space);
    });
    EXPECT_EQ(choose(*window.menuItems().QuickStartGuideToolStripMenuItem), "alert_OK_pushed\n");
    EXPECT_EQ(boxes.messages().last(),
              QStringLiteral("You can download the Quick Start Guide from the following.\n"
                             "https://www.marvode.example/kavelo/quick-start"));
    dialog()->done(QDialog::Rejected);
    boxes.reactWith([this](QMessageBox &box) {
        EXPECT_EQ(box.parentWidget(), &window) << "the dialog has been closed";
        EXPECT_FALSE(box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))->isVisible());
        EXPECT_EQ(box.windowModality(), Qt::ApplicationModal);
        EXPECT_GE(box.width(), 420) << "its texts wrap after a few words";
        EXPECT_FALSE(box.iconPixmap().isNull());
        ProgramStyle style;
        QPalette dark(Qt::black);
        dark.setColor(QPalette::PlaceholderText, Qt::black);
        style.polish(dark);
        EXPECT_GT(dark.color(QPalette::PlaceholderText).lightness(), 200);
        EXPECT_FALSE(style.standardIcon(QStyle::SP_MessageBoxInformation, nullptr, &box).isNull());
        box.close();
    });
    EXPECT_EQ(choose(*window.menuItems().VersionInformationToolStripMenuItem), "others:0\n");
    EXPECT_EQ(boxes.messages().last(),
              QStringLiteral("Mac App for Marvode Kavelo QX7\nVersion: 2.3.2"));
    EXPECT_EQ(applicationIcon().pixmap(64).toImage().pixelColor(32, 32), QColor(0xF0, 0x91, 0x36))
        << "the middle pedal is orange";
}

TEST_F(MenuTest, RestoresOnEscapeOrTheOkButtonOnly)
{
    // A desktop without a theme shows icons on buttons.
    window.setStyleSheet(QStringLiteral("* { dialogbuttonbox-buttons-have-icons: 1 }"));
    const auto press = [this](Qt::Key key, bool afterTab = false) {
        return [this, key, afterTab](QMessageBox &box) {
            EXPECT_FALSE(standard(0)->isEnabled());
            EXPECT_TRUE(box.button(QMessageBox::Ok)->icon().isNull());
            settle();
            if (afterTab) {
                QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
            }
            QTest::keyClick(box.focusWidget(), key);
        };
    };
    const std::string restoring = "The selected Kavelo is returning to the initial state in time "
                                  "of factory shipment.\nalert_OK_pushed\n";
    const std::vector<std::pair<BoxWatcher::Reaction, std::string>> answers{
        {press(Qt::Key_Return), "Canceled\n"},
        {press(Qt::Key_Space), "Canceled\n"},
        {press(Qt::Key_Return, true), "Canceled\n"},
        {press(Qt::Key_Enter, true), "Canceled\n"},
        {[](QMessageBox &box) {
             EXPECT_EQ(box.text(), QStringLiteral("Marvode Kavelo"));
             box.close(); // by its frame
         },
         "others:0\n"},
        {press(Qt::Key_Space, true), restoring},
        {press(Qt::Key_Escape), restoring},
    };
    for (std::size_t i = 0; i < answers.size(); ++i) {
        SCOPED_TRACE(i);
        const auto &[answer, output] = answers[i];
        const bool restores = output == restoring;
        unit.memory().numberOfPedals = i % 2 == 0 ? 5 : 3;
        setFiveModes(unit);
        plugInAndWait();
        const UnitMemory before = unit.memory();
        boxes.reactWith(answer);
        if (restores) {
            unit.setReplyDelay(std::chrono::milliseconds(20));
            when([&] { return !requests.empty(); },
                 [&] {
                     EXPECT_FALSE(standard(0)->isEnabled() || restoreItem()->isEnabled());
                     window.buttonSetPedal0Standard_Clicked();
                     EXPECT_FALSE(isDialogShown());
                 });
            boxes.reactWith(press(Qt::Key_Return));
        }
        EXPECT_EQ(choose(*restoreItem()), output);
        EXPECT_EQ(boxes.messages().last(), restores ? Restored : RestoreQuestion);
        EXPECT_EQ(requests.size(), restores ? before.numberOfPedals + 1U : 0U);
        EXPECT_EQ(unit.memory(), restores ? restored(before) : before);
        EXPECT_TRUE(showsUnit(unit));
        unplugAndWait();
    }
}

TEST_F(MenuTest, ARestoreSendsBackOnlyWhatItsOwnUnitHasTold)
{
    for (const bool isReadBrokenOff : {false, true}) {
        SCOPED_TRACE(isReadBrokenOff);
        setFiveModes(unit);
        plugInAndWait();
        unplugAndWait();
        SimulatedUnit next;
        setFiveModes(next);
        for (PedalMemory &pedal : next.memory().pedals) {
            pedal.record[12] ^= 0xFF;
        }
        const UnitMemory expected = isReadBrokenOff ? next.memory() : restored(next.memory());
        if (isReadBrokenOff) {
            next.setFault({.kind = FaultKind::DropReply, .request = {GET_ADDITIONAL_DATA}});
            boxes.answerWith(Qt::Key_Return);
            bus::plugIn(next);
            runTicks(100);
            EXPECT_TRUE(isBlank());
            restoreItem()->trigger();
        } else {
            next.setReplyDelay(3 * TickPeriod / 2);
            when([&] { return standard(1)->isEnabled(); },
                 [&] {
                     restoreItem()->trigger();
                     window.buttonSetPedal0Standard_Clicked();
                     window.SetPedal2Advanced_clicked();
                     EXPECT_EQ(boxes.dialogsShown(), 0) << "the restore counts as begun";
                 });
            bus::plugIn(next);
        }
        boxes.answerWith(Qt::Key_Escape);
        boxes.answerWith(Qt::Key_Return);
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        runTicks(2);
        EXPECT_EQ(boxes.messages().last(), isReadBrokenOff ? NotRestored : Restored);
        EXPECT_EQ(next.memory(), expected);
        bus::unplug(next);
        runTicks(2);
    }
}

} // namespace
} // namespace kavelo
