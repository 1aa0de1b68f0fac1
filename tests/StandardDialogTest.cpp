#include "TabStops.h"
#include "WindowTest.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QMessageBox>
#include <QRadioButton>
#include <QTabWidget>

namespace kavelo {
namespace {

const auto Question =
    QStringLiteral("The contents set in this pedal are beyond the Standard settings.\n"
                   "Click [OK] to set this pedal within the Standard settings.\n"
                   "Click [Cancel] to return to Main Window without doing anything.");

/// What the dialog shows, or what is to be chosen in it.
struct Choice
{
    int tab = 0;            ///< 0 keyboard, 1 mouse
    QString radio;          ///< name of the tab's chosen radio button, without "radiobutton"
    int key = -1;           ///< row of the key list
    unsigned modifiers = 0; ///< ticked boxes, as a modifier byte

    bool operator==(const Choice &) const = default;
};

void PrintTo(const Choice &choice, std::ostream *out)
{
    *out << "tab " << choice.tab << ' ' << choice.radio.toStdString() << " key " << choice.key
         << " modifiers " << choice.modifiers;
}

const std::array ModifierBoxes{"checkboxCtrl", "checkboxShift", "checkboxAlt",
                               "checkboxWindowsKey"};
const std::array KeyboardRadios{"NoModifiers", "WithModifiers", "OnlyModifiers"};
const std::array MouseRadios{"LeftClick", "RightClick", "CenterClick", "DoubleClick"};

class StandardDialogTest : public WindowTest
{
protected:
    void plugInAndWait()
    {
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        requests.clear();
    }

    template <class Control>
    Control *in(const QString &name)
    {
        return dialog()->findChild<Control *>(name);
    }
    QRadioButton *radio(const char *name)
    {
        return in<QRadioButton>(QStringLiteral("radiobutton") + QLatin1String(name));
    }
    QCheckBox *modifierBox(std::size_t bit)
    {
        return in<QCheckBox>(QLatin1String(ModifierBoxes.at(bit)));
    }
    QComboBox *keys() { return in<QComboBox>(QStringLiteral("listboxKeys")); }
    QTabWidget *tabs() { return in<QTabWidget>(QStringLiteral("tabcontrolOutputMode")); }
    QPushButton *write() { return in<QPushButton>(QStringLiteral("buttonProgramKavelo")); }

    void open(int pedal) { click(standard(pedal)); }

    Choice shown()
    {
        Choice choice{tabs()->currentIndex(), {}, keys()->currentIndex(), 0};
        const auto note = [&](const auto &radios) {
            for (const char *name : radios) {
                choice.radio += radio(name)->isChecked() ? QLatin1String(name) : QLatin1String();
            }
        };
        choice.tab == 0 ? note(KeyboardRadios) : note(MouseRadios);
        for (std::size_t bit = 0; bit < ModifierBoxes.size(); ++bit) {
            choice.modifiers |= modifierBox(bit)->isChecked() ? 1U << bit : 0U;
        }
        return choice;
    }

    /// Makes the choice with keys and the actions of assistive technology.
    void choose(const Choice &choice)
    {
        QTest::keyClick(tabs()->tabBar(), choice.tab == 0 ? Qt::Key_Left : Qt::Key_Right);
        toggle(radio(qUtf8Printable(choice.radio)));
        if (choice.key >= 0) {
            QTest::keyClick(keys(), Qt::Key_Home);
            for (int row = 0; row < choice.key; ++row) {
                QTest::keyClick(keys(), Qt::Key_Down);
            }
        }
        for (std::size_t bit = 0; bit < ModifierBoxes.size(); ++bit) {
            if ((choice.modifiers & 1U << bit) != 0) {
                toggle(modifierBox(bit));
            }
        }
    }
};

TEST_F(StandardDialogTest, OffersThe91StandardKeysToEveryone)
{
    unit.memory().pedals[0] = {};
    plugInAndWait();
    standard(0)->setFocus();
    QTest::keyClick(standard(0), Qt::Key_Return);
    ASSERT_NE(dialog(), nullptr);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        QKeyEvent heldDown(QEvent::KeyPress, key, {}, {}, true);
        QApplication::sendEvent(dialog(), &heldDown);
        ASSERT_NE(dialog(), nullptr) << "the key that has opened the dialog is still down";
    }
    EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Standard settings"));
    EXPECT_EQ(in<QLabel>(QStringLiteral("Label_PedalName"))->text(),
              QStringLiteral("Standard settings  Center Pedal"));
    EXPECT_EQ(keys()->count(), 91);
    EXPECT_EQ(shown(), (Choice{0, QStringLiteral("NoModifiers"), -1, 0}));
    EXPECT_FALSE(write()->isEnabled()) << "no key is chosen";
    EXPECT_EQ(QAccessible::queryAccessibleInterface(keys())->text(QAccessible::Name),
              QStringLiteral("Key"));

    QTest::keyClick(keys(), Qt::Key_X); // typing finds the key
    EXPECT_EQ(keys()->currentText(), QStringLiteral("x"));
    EXPECT_EQ(in<QLabel>(QStringLiteral("textboxExplanation"))->text(),
              QStringLiteral("Shift and this key will be an uppercase X"));
    EXPECT_TRUE(write()->isEnabled());
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_FALSE(StandardSettingDialogOpen);
    EXPECT_TRUE(requests.empty());
}

TEST_F(StandardDialogTest, EveryControlIsNamedAndReachedByTab)
{
    unit.memory().pedals[2] = {.mode = SIMPLE_CLICK, .record = {1}};
    plugInAndWait();
    open(2);
    for (const int tab : {0, 1}) {
        SCOPED_TRACE(tab);
        tabs()->setCurrentIndex(tab);
        EXPECT_GE(tabStops(*dialog(), *tabs()).size(), 4U);
    }
}

struct LoadCase
{
    std::uint8_t mode;
    CommonRecord record;
    bool isWithinStandard;
    Choice shown;
    bool canBeWritten;
};

TEST_F(StandardDialogTest, ShowsASettingOrAsksAboutOneBeyondTheStandard)
{
    const auto choice = [](int tab, const char *radio, int key, unsigned modifiers) {
        return Choice{tab, QLatin1String(radio), key, modifiers};
    };
    const std::vector<LoadCase> cases{
        {SIMPLE_KEY_OUTPUT, {0, 0x04}, true, choice(0, "NoModifiers", 0, 0), true},
        {SIMPLE_KEY_OUTPUT, {0x09, 0x3E}, true, choice(0, "WithModifiers", 56, 9), true},
        {SIMPLE_KEY_OUTPUT, {0x03, 0}, true, choice(0, "OnlyModifiers", -1, 3), true},
        {SIMPLE_KEY_OUTPUT, {0x02, 0x31}, false, choice(0, "WithModifiers", -1, 2), false},
        {SIMPLE_KEY_OUTPUT, {0x11, 0x04}, false, choice(0, "WithModifiers", 0, 1), true},
        {SIMPLE_KEY_OUTPUT, {0x10, 0}, false, choice(0, "OnlyModifiers", -1, 0), false},
        {SIMPLE_KEY_OUTPUT, {0, 0xFF}, false, choice(0, "NoModifiers", -1, 0), false},
        {SIMPLE_CLICK, {4, 9, 9, 9}, true, choice(1, "CenterClick", -1, 0), true},
        {SIMPLE_CLICK, {3}, false, choice(1, "", -1, 0), true},
        {SIMPLE_DOUBLE_CLICK, {1, 15, 0, 15}, true, choice(1, "DoubleClick", -1, 0), true},
        {SIMPLE_DOUBLE_CLICK, {1, 20, 0, 15}, false, choice(1, "", -1, 0), true},
        {POINTER_MOVE, {1, 4}, false, choice(0, "NoModifiers", -1, 0), false},
        {200, {0, 4}, false, choice(0, "NoModifiers", -1, 0), false},
    };
    plugInAndWait();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        const LoadCase &load = cases[i];
        OutputMode[2] = load.mode;
        CommonData[2] = load.record;
        const qsizetype asked = boxes.messages().size();
        if (!load.isWithinStandard) {
            boxes.answerWith(Qt::Key_Escape); // the OK button's key
        }
        const std::string output = printed([&] { open(2); });
        EXPECT_EQ(output, load.isWithinStandard
                              ? ""
                              : "Settings in Pedal 2 is out of the Standard, but the user selected "
                                "settings by the Standard.\n");
        ASSERT_NE(dialog(), nullptr);
        EXPECT_EQ(boxes.messages().size() - asked, load.isWithinStandard ? 0 : 1);
        EXPECT_EQ(shown(), load.shown);
        EXPECT_EQ(write()->isEnabled(), load.canBeWritten);
        QTest::keyClick(in<QPushButton>(QStringLiteral("buttonCancel")), Qt::Key_Return);
        EXPECT_EQ(dialog(), nullptr);
        EXPECT_EQ(OutputMode[2], load.mode);
        EXPECT_EQ(CommonData[2], load.record);

        if (!load.isWithinStandard) {
            EXPECT_EQ(boxes.messages().last(), Question);
            boxes.answerWith(Qt::Key_Return); // the Cancel button's key
            SettingEnabled = true;            // as another dialog has left it
            EXPECT_EQ(printed([&] { open(2); }),
                      "Settings in Pedal 2 is out of the Standard, and the user selected "
                      "canceling.\n");
            EXPECT_FALSE(SettingEnabled);
            EXPECT_EQ(dialog(), nullptr);
            EXPECT_FALSE(StandardSettingDialogOpen);
        }
    }
    EXPECT_TRUE(requests.empty());
}

TEST_F(StandardDialogTest, TheWriteButtonFollowsTheChoice)
{
    unit.memory().pedals[0] = {.mode = SIMPLE_KEY_OUTPUT, .record = {0, 0x04}};
    plugInAndWait();
    open(0);
    click(radio("WithModifiers"));
    EXPECT_FALSE(write()->isEnabled()) << "a modifier is missing";
    click(modifierBox(1));
    EXPECT_TRUE(write()->isEnabled());
    click(radio("OnlyModifiers"));
    EXPECT_TRUE(write()->isEnabled());
    EXPECT_FALSE(keys()->isEnabled());
    click(modifierBox(1));
    EXPECT_FALSE(write()->isEnabled());
    click(radio("NoModifiers"));
    EXPECT_TRUE(write()->isEnabled());
    EXPECT_FALSE(modifierBox(0)->isEnabled());
    tabs()->setCurrentIndex(1);
    EXPECT_FALSE(write()->isEnabled()) << "no mouse action is chosen";
    click(radio("LeftClick"));
    EXPECT_TRUE(write()->isEnabled());
    tabs()->setCurrentIndex(0);
    click(radio("OnlyModifiers"));
    EXPECT_FALSE(write()->isEnabled());
    tabs()->setCurrentIndex(1);
    EXPECT_TRUE(write()->isEnabled()) << "each tab has its own state";
    dialog()->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return dialog()->isActiveWindow(); }));
    radio("LeftClick")->setFocus();
    QTest::keyClick(radio("LeftClick"), Qt::Key_Down);
    EXPECT_EQ(shown().radio, QStringLiteral("RightClick"));
    QTest::keyClick(dialog(), Qt::Key_Escape);
}

TEST_F(StandardDialogTest, EveryChoiceSurvivesTheRoundThroughTheUnit)
{
    std::vector<Choice> choices;
    for (int key = 0; key < 91; ++key) {
        choices.push_back({0, QStringLiteral("NoModifiers"), key, 0});
        choices.push_back({0, QStringLiteral("WithModifiers"), key, 1U << (key % 4)});
        choices.push_back({0, QStringLiteral("WithModifiers"), key, 0xF});
    }
    for (unsigned modifiers = 1; modifiers <= 0xF; ++modifiers) {
        choices.push_back({0, QStringLiteral("OnlyModifiers"), -1, modifiers});
    }
    for (const char *name : MouseRadios) {
        choices.push_back({1, QLatin1String(name), -1, 0});
    }
    std::mt19937 random(3);
    plugInAndWait();
    for (const Choice &choice : choices) {
        SCOPED_TRACE(::testing::PrintToString(choice));
        // Whatever the dialog does not write must come back as it was.
        PedalMemory &pedal = unit.memory().pedals[3];
        std::ranges::generate(pedal.record, [&] { return std::uint8_t(random()); });
        pedal.mode = POINTER_MOVE;
        OutputMode[3] = pedal.mode;
        CommonData[3] = pedal.record;
        const CommonRecord before = pedal.record;
        const std::size_t written = choice.tab == 0                                 ? 2
                                    : choice.radio == QStringLiteral("DoubleClick") ? 4
                                                                                    : 1;
        boxes.answerWith(Qt::Key_Escape);
        open(3);
        if (choice.radio == QStringLiteral("NoModifiers")) {
            choose({0, QStringLiteral("WithModifiers"), 0, 0xF}); // ticks that must not count
        }
        choose(choice);
        boxes.answerWith(Qt::Key_Return);
        click(write());
        ASSERT_EQ(dialog(), nullptr);
        EXPECT_TRUE(
            std::equal(before.begin() + written, before.end(), pedal.record.begin() + written));

        OutputMode[3] = pedal.mode;
        CommonData[3] = pedal.record;
        open(3);
        ASSERT_NE(dialog(), nullptr) << "it is within the Standard";
        EXPECT_EQ(shown(), choice);
        QTest::keyClick(dialog(), Qt::Key_Escape);
    }
}

TEST_F(StandardDialogTest, WritingSendsTheRecordAndTheParametersAndNamesThePedal)
{
    unit.memory().pedals[4].record = {0, 0x4F, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    plugInAndWait();
    open(4);
    choose({0, QStringLiteral("WithModifiers"), 0, 2});
    PedalName = QStringLiteral("Left Pedal"); // as another dialog has left it
    boxes.answerWith(Qt::Key_Return);
    click(write());
    EXPECT_EQ(boxes.messages().last(),
              QStringLiteral("The settings of the Right End Pedal have finished successfully."));
    EXPECT_EQ(requests, (std::vector<hid::Report>{
                            {0x94, 4, 0, 0x02, 0x04, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11},
                            {0x92, 25, 20, 15, 15, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}}));
    EXPECT_EQ(unit.memory().timing, (std::array<std::uint8_t, 4>{25, 20, 15, 15}));
    EXPECT_TRUE(showsUnit(unit));
}

TEST_F(StandardDialogTest, ADialogEditsItsOwnPedalEvenWhileTheUnitIsStillBeingRead)
{
    unit.setReplyDelay(std::chrono::milliseconds(40));
    when([&] { return standard(0)->isEnabled(); },
         [&] {
             unit.setReplyDelay(std::chrono::milliseconds(1));
             open(0);
         });
    const UnitMemory before = unit.memory();
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return dialog() != nullptr && showsUnit(unit); }));
    choose({1, QStringLiteral("RightClick"), -1, 0});
    boxes.answerWith(Qt::Key_Return);
    click(write());
    ASSERT_TRUE(waitUntil([&] { return !boxes.messages().isEmpty() && showsUnit(unit); }));
    EXPECT_EQ(unit.memory().pedals[0].record[0], 2);
    EXPECT_TRUE(std::equal(before.pedals.begin() + 1, before.pedals.end(),
                           unit.memory().pedals.begin() + 1));
    runTicks(2);
    EXPECT_TRUE(showsUnit(unit));
}

TEST_F(StandardDialogTest, NothingIsWrittenToAUnitThatHasJustTakenTheOthersPlace)
{
    SimulatedUnit next;
    const UnitMemory before = next.memory();
    plugInAndWait();
    open(1);
    bus::unplug(unit);
    bus::plugIn(next);
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(); // the link changes units, but no tick has come yet
    }
    ASSERT_TRUE(isConnected && DeviceDetectedChanged);
    choose({1, QStringLiteral("RightClick"), -1, 0});
    click(write());
    ASSERT_TRUE(waitUntil([&] { return showsUnit(next); }));
    EXPECT_EQ(next.memory(), before);
}

/// How far the user has come when the unit goes.
enum class Moment { DialogOpen, QuestionOpen, SuccessShown, Writing };

class UnplugTest : public StandardDialogTest, public ::testing::WithParamInterface<Moment>
{
};

TEST_P(UnplugTest, TakesTheDialogsDownAndAReplugReadsEverythingAgain)
{
    const Moment moment = GetParam();
    unit.memory().pedals[0].mode =
        moment == Moment::QuestionOpen ? WHEEL_ROTATION : SIMPLE_KEY_OUTPUT;
    plugInAndWait();
    bool wasTakenDown = false;
    const auto replugWhenTakenDown = [&] {
        when([&] { return dialog() == nullptr && isBlank(); },
             [&] {
                 wasTakenDown = true;
                 bus::plugIn(unit);
             });
    };
    switch (moment) {
    case Moment::QuestionOpen:
        boxes.reactWith([&](QMessageBox & /*box*/) {
            replugWhenTakenDown();
            bus::unplug(unit);
        });
        open(0);
        break;
    case Moment::DialogOpen:
        open(0);
        replugWhenTakenDown();
        bus::unplug(unit);
        break;
    case Moment::SuccessShown:
    case Moment::Writing:
        open(0);
        choose({1, QStringLiteral("RightClick"), -1, 0});
        replugWhenTakenDown();
        if (moment == Moment::SuccessShown) {
            boxes.reactWith([&](QMessageBox & /*box*/) { bus::unplug(unit); });
        } else {
            unit.setFault({.kind = FaultKind::Unplug, .exchange = 1});
        }
        click(write());
        break;
    }
    ASSERT_TRUE(waitUntil([&] { return wasTakenDown && showsUnit(unit); }));
    runTicks(2);
    EXPECT_TRUE(showsUnit(unit));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(StandardSettingDialogOpen);
    EXPECT_EQ(boxes.dialogsShown(), moment == Moment::QuestionOpen ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(Moments, UnplugTest,
                         ::testing::Values(Moment::DialogOpen, Moment::QuestionOpen,
                                           Moment::SuccessShown, Moment::Writing));

} // namespace
} // namespace kavelo
