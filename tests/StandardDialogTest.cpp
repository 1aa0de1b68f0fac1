#include "DialogTest.h"

#include <QAbstractItemView>
#include <QMessageBox>

namespace kavelo {
namespace {

const auto Question =
    QStringLiteral("The contents set in this pedal are beyond the Standard settings.\n"
                   "Click [OK] to set this pedal within the Standard settings.\n"
                   "Click [Cancel] to return to Main Window without doing anything.");

/// What the dialog shows, or what is to be chosen in it: the tab (0 keyboard, 1 mouse), its buttons
/// that are on, the row of the key list (-1: none).
using Choice = std::tuple<int, std::string, int>;

class StandardDialogTest : public DialogTest
{
protected:
    void open(int pedal)
    {
        openStandard(pedal);
        EXPECT_TRUE(waitUntil([] { return QApplication::activeModalWidget() == nullptr; }));
        settle();
    }
    QComboBox *keys() { return required(dialog()->findChild<QComboBox *>(), "listboxKeys"); }
    Choice shownChoice()
    {
        return {tabs()->currentIndex(), checkedButtons(), keys()->currentIndex()};
    }

    void write(const Choice &choice)
    {
        const auto &[tab, buttons, key] = choice;
        QTest::keyClick(tabs()->tabBar(), tab == 0 ? Qt::Key_Left : Qt::Key_Right);
        perform(buttons + (key < 0 ? "" : " Keys=" + std::to_string(key)));
        click("ProgramKavelo");
    }
};

TEST_F(StandardDialogTest, NamesThePedal)
{
    const std::vector<std::vector<std::string>> places{
        {"Right", "Left"},
        {"Center", "Left", "Right"},
        {"Right", "Left", "Right end", "Left end"},
        {"Center", "Left", "Right", "Left end", "Right end"},
    };
    plugInAndWait();
    for (const auto &ofUnit : places) {
        NumberOfPedals = int(ofUnit.size());
        for (std::size_t pedal = 0; pedal < ofUnit.size(); ++pedal) {
            open(int(pedal));
            EXPECT_EQ(label("Label_PedalName"), "Standard settings  " + ofUnit[pedal] + " Pedal");
            click("Cancel");
        }
    }
    NumberOfPedals = 1;
    open(0);
    EXPECT_EQ(label("Label_PedalName"), "Standard settings");
    EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Standard settings"));
}

TEST_F(StandardDialogTest, EveryControlIsNamedAndReachedByTab)
{
    plugInAndWait();
    open(0); // a left click
    EXPECT_EQ(tabOrder(), " +Mouse +Left button click -Right button click -Middle button click "
                          "-Double click +Write to Kavelo +Cancel");
    control("LeftClick")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(checkedButtons(), "RightClick");
    tabs()->setCurrentIndex(0);
    EXPECT_EQ(tabOrder(), " +Keyboard +WITHOUT control, shift, option, command "
                          "-WITH control, shift, option, command -ONLY control, shift, option, "
                          "command -control -shift -option -command +Key -Write to Kavelo +Cancel");
    EXPECT_EQ(label("labelExplanation"), "Explanation");
}

TEST_F(StandardDialogTest, ShowsASettingOrAsksAboutOneBeyondTheStandard)
{
    // The setting, whether it is within the Standard, what is shown, whether it can be written.
    const std::vector<std::tuple<std::uint8_t, CommonRecord, bool, Choice, bool>> cases{
        {SIMPLE_KEY_OUTPUT, {0, 0x04}, true, {0, "NoModifiers", 0}, true},
        {SIMPLE_KEY_OUTPUT, {0x09, 0x3E}, true, {0, "WithModifiers Ctrl WindowsKey", 56}, true},
        {SIMPLE_KEY_OUTPUT, {0x03, 0}, true, {0, "OnlyModifiers Ctrl Shift", -1}, true},
        {SIMPLE_KEY_OUTPUT, {0x02, 0x31}, false, {0, "WithModifiers Shift", -1}, false},
        {SIMPLE_KEY_OUTPUT, {0x81, 0x04}, false, {0, "WithModifiers Ctrl", 0}, true},
        {SIMPLE_KEY_OUTPUT, {0x10, 0}, false, {0, "OnlyModifiers", -1}, false},
        {SIMPLE_KEY_OUTPUT, {0, 0xFF}, false, {0, "NoModifiers", -1}, false},
        {SIMPLE_CLICK, {4, 9, 9, 9}, true, {1, "CenterClick", -1}, true},
        {SIMPLE_CLICK, {3}, false, {1, "", -1}, true},
        {SIMPLE_DOUBLE_CLICK, {1, 15, 0, 15}, true, {1, "DoubleClick", -1}, true},
        {SIMPLE_DOUBLE_CLICK, {1, 20, 0, 15}, false, {1, "", -1}, true},
        {POINTER_MOVE, {1, 4}, false, {0, "NoModifiers", -1}, false},
        {200, {0, 4}, false, {0, "NoModifiers", -1}, false},
    };
    const std::string beyond = "Settings in Pedal 2 is out of the Standard, ";
    plugInAndWait();
    for (const auto &[mode, record, isWithin, choice, canBeWritten] : cases) {
        SCOPED_TRACE(::testing::PrintToString(record));
        load(2, mode, record);
        boxes.forgetMessages();
        std::string log;
        if (!isWithin) {
            boxes.answerWith(Qt::Key_Return); // the Cancel button's key
            SettingEnabled = true;            // as another dialog has left it
            EXPECT_EQ(printed([&] { open(2); }), beyond + "and the user selected canceling.\n");
            EXPECT_FALSE(SettingEnabled);
            EXPECT_FALSE(isDialogShown());
            boxes.answerWith(Qt::Key_Escape); // the OK button's key
            log = beyond + "but the user selected settings by the Standard.\n";
        }
        EXPECT_EQ(printed([&] { open(2); }), log);
        EXPECT_EQ(boxes.messages(), QStringList(isWithin ? 0 : 2, Question));
        EXPECT_EQ(shownChoice(), choice);
        EXPECT_EQ(label("textboxExplanation") == "Shift and this key will be an uppercase A",
                  keys()->currentIndex() == 0);
        EXPECT_EQ(control("ProgramKavelo")->isEnabled(), canBeWritten);
        QTest::keyClick(control("Cancel"), Qt::Key_Return);
        EXPECT_FALSE(isDialogShown());
        EXPECT_FALSE(StandardSettingDialogOpen);
        EXPECT_EQ(std::tie(OutputMode[2], CommonData[2]), std::tie(mode, record));
    }
    EXPECT_TRUE(requests.empty());
}

TEST_F(StandardDialogTest, TheControlsFollowTheChoice)
{
    // clang-format off
    // The tab, what is pressed there, how many key controls and modifiers can be used, whether the
    // choice can be written.
    const std::vector<std::tuple<int, const char *, int, int, bool>> steps{
        {0, "", 4, 0, false}, // no key is chosen
        {0, "Keys=23", 4, 0, true},
        {0, "WithModifiers", 4, 4, false}, // a modifier is missing
        {0, "Shift", 4, 4, true},
        {0, "OnlyModifiers", 0, 4, true},
        {0, "Shift", 0, 4, false},
        {0, "NoModifiers", 4, 0, true},
        {1, "", 4, 0, false}, // no mouse action is chosen
        {1, "LeftClick", 4, 0, true},
        {0, "OnlyModifiers", 0, 4, false},
        {1, "", 0, 4, true}, // each tab has its own state
    };
    // clang-format on
    unit.memory().pedals[0] = {};
    plugInAndWait();
    open(0);
    for (const auto &[tab, pressed, keyControls, modifiers, canBeWritten] : steps) {
        SCOPED_TRACE(pressed);
        tabs()->setCurrentIndex(tab);
        perform(pressed);
        EXPECT_EQ(countEnabled("labelKeys|Keys|.*Explanation"), keyControls);
        EXPECT_EQ(countEnabled("checkbox.*"), modifiers);
        EXPECT_EQ(control("ProgramKavelo")->isEnabled(), canBeWritten);
    }
    EXPECT_EQ(keys()->currentText(), QStringLiteral("x"));
    EXPECT_EQ(label("textboxExplanation"), "Shift and this key will be an uppercase X");
}

TEST_F(StandardDialogTest, AssistiveTechnologyChoosesAKeyWhetherTheListIsOpenOrNot)
{
    unit.memory().pedals[0] = {};
    plugInAndWait();
    open(0);
    QAbstractItemView *list = keys()->view();
    const auto choose = [&](int key) {
        assistance(list)->child(key)->actionInterface()->doAction(
            QAccessibleActionInterface::toggleAction());
        runTicks(1);
        return keys()->currentIndex();
    };
    const auto chosenAfter = [&](Qt::Key key) {
        QTest::keyClick(list, key);
        runTicks(1);
        return keys()->currentIndex();
    };
    EXPECT_EQ(choose(5), 5);
    EXPECT_EQ(label("textboxExplanation"), "Shift and this key will be an uppercase F");
    EXPECT_TRUE(control("ProgramKavelo")->isEnabled());
    QTest::keyClick(keys(), Qt::Key_Down);
    EXPECT_EQ(choose(5), 5) << "after a key in the closed list";
    keys()->showPopup();
    EXPECT_EQ(list->height() / list->sizeHintForRow(0), 15) << "rows, and a scroll bar";
    EXPECT_EQ(chosenAfter(Qt::Key_Down), 5) << "the user has only walked there";
    EXPECT_EQ(choose(8), 8);
    EXPECT_FALSE(list->isVisible());
    keys()->showPopup();
    EXPECT_EQ(chosenAfter(Qt::Key_Down), 8);
    EXPECT_EQ(chosenAfter(Qt::Key_Escape), 8);
    EXPECT_EQ(choose(9), 9) << "where the user has walked to before";
    perform("OnlyModifiers");
    EXPECT_EQ(choose(3), 9) << "the list can't be used";
}

TEST_F(StandardDialogTest, KeepsItsSizeAndCutsNoExplanation)
{
    plugInAndWait();
    for (const int size : {8, 13, 18}) {
        setFontSize(size);
        open(0); // a click: no key is chosen and no explanation shown
        tabs()->setCurrentIndex(0);
        runTicks(1);
        ASSERT_EQ(keys()->count(), 91);
        EXPECT_EQ(dialog()->minimumSize(), dialog()->maximumSize());
        const auto *text = control<QLabel>("textboxExplanation");
        const QSize usual = dialog()->size();
        for (int key = 0; key < keys()->count(); ++key) {
            QTest::keyClick(keys(), Qt::Key_Down);
            runTicks(1);
            EXPECT_EQ(dialog()->size(), usual) << key;
            EXPECT_LE(text->heightForWidth(text->width()), text->height()) << key;
        }
        dialog()->reject();
    }
}

TEST_F(StandardDialogTest, EveryChoiceSurvivesTheRoundThroughTheUnit)
{
    std::vector<Choice> choices;
    for (int key = -15; key < 91; ++key) { // below 0 modifiers only
        const unsigned modifiers = unsigned(key + 16) % 16;
        std::string buttons = key < 0          ? "OnlyModifiers"
                              : modifiers == 0 ? "NoModifiers"
                                               : "WithModifiers";
        for (unsigned bit = 0; bit < 4; ++bit) {
            const std::array boxNames{" Ctrl", " Shift", " Alt", " WindowsKey"};
            buttons += (modifiers >> bit & 1U) != 0 ? boxNames.at(bit) : "";
        }
        choices.emplace_back(0, buttons, std::max(key, -1));
    }
    for (const char *button : {"LeftClick", "RightClick", "CenterClick", "DoubleClick"}) {
        choices.emplace_back(1, button, -1);
    }
    std::mt19937 random(3);
    plugInAndWait();
    for (const Choice &choice : choices) {
        SCOPED_TRACE(::testing::PrintToString(choice));
        const auto &[tab, buttons, key] = choice;
        // Whatever the dialog does not write must come back as it was.
        PedalMemory &pedal = unit.memory().pedals[3];
        std::ranges::generate(pedal.record, [&] { return std::uint8_t(random()); });
        const CommonRecord before = pedal.record;
        const std::size_t written = tab == 0 ? 2 : buttons == "DoubleClick" ? 4 : 1;
        load(3, POINTER_MOVE, before);
        boxes.answerWith(Qt::Key_Escape);
        open(3);
        if (buttons == "NoModifiers") {
            perform("WithModifiers Ctrl Shift Alt WindowsKey"); // ticks that must not count
        }
        SelectedPedalNo = 1; // as a read of the unit and another dialog have left them
        PedalName = QStringLiteral("Left Pedal");
        boxes.answerWith(Qt::Key_Return);
        write(choice);
        EXPECT_TRUE(boxes.messages().last().contains(QStringLiteral("Left End Pedal")));
        ASSERT_FALSE(isDialogShown());
        EXPECT_TRUE(
            std::equal(before.begin() + written, before.end(), pedal.record.begin() + written));

        load(3, pedal.mode, pedal.record);
        open(3);
        EXPECT_EQ(shownChoice(), choice);
        QTest::keyClick(dialog(), Qt::Key_Escape);
    }
}

TEST_F(StandardDialogTest, AnUnplugTakesItDownAtAnyMomentAndAReplugReadsEverythingAgain)
{
    const auto unplugAtBox = [&] {
        boxes.reactWith([&](QMessageBox & /*box*/) { bus::unplug(unit); });
    };
    const Choice right{1, "RightClick", -1};
    // clang-format off
    const std::vector<std::function<void()>> moments{
        [&] { load(0, WHEEL_ROTATION, {}); unplugAtBox(); open(0); }, // at the question
        [&] { open(0); bus::unplug(unit); },
        [&] { unplugAtBox(); open(0); write(right); }, // at the success
        [&] { unit.setFault({.kind = FaultKind::Unplug, .exchange = 1}); open(0); write(right); },
    };
    // clang-format on
    plugInAndWait();
    for (std::size_t i = 0; i < moments.size(); ++i) {
        SCOPED_TRACE(i);
        when([&] { return !isDialogShown() && isBlank(); }, [&] { bus::plugIn(unit); });
        moments[i]();
        ASSERT_TRUE(waitUntil([&] { return bus::isPluggedIn(unit) && showsUnit(unit); }));
        runTicks(2);
        EXPECT_TRUE(showsUnit(unit));
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_FALSE(StandardSettingDialogOpen || CloseStandardSetting || timer2state);
        EXPECT_EQ(boxes.dialogsShown(), int(i)) << "none came behind the question";
    }
}

} // namespace
} // namespace kavelo
