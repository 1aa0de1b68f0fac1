#include "AdvancedSettingDialogViewController.h"
#include "DialogTest.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QSlider>
#include <QSpinBox>

namespace kavelo {
namespace {

constexpr int EditedPedal = 3;
const QStringList Success{
    QStringLiteral("The settings of the Left End Pedal have finished successfully.")};

enum Page { AsOpened = -1, Click, KeyOutput, PointerMovement, MultipleKeyOutput };

class AdvancedDialogTest : public DialogTest
{
protected:
    void SetUp() override { plugInAndWait(); }

    void open(Page page = AsOpened, bool settingEnabled = true)
    {
        SelectedPedalNo = EditedPedal;
        PedalName = name(EditedPedal)->text();
        SettingEnabled = settingEnabled;
        window.SetPedal2Advanced_clicked();
        tabs()->setCurrentIndex(page);
        settle();
    }
    /// Sets a field's text as assistive technology does.
    static void enterText(QLineEdit *field, const char *text)
    {
        assistance(field)->editableTextInterface()->replaceText(0, int(field->text().size()),
                                                                QString::fromUtf8(text));
    }
    QLineEdit *text(const QByteArray &field) { return control<QLineEdit>(field + "_textbox"); }
    void expectNumber(const QByteArray &field, int number)
    {
        EXPECT_EQ(text(field)->text(), QString::number(number)) << field.data();
        EXPECT_EQ(control<QSpinBox>(field)->value(), number) << field.data();
        EXPECT_EQ(assistance(control(field))->valueInterface()->minimumStepSize(), 1);
    }

    /// Performs the steps on a page for a pedal in another mode and presses OK. Expects that the
    /// unit's record then begins with the given bytes, and that its other bytes are unchanged.
    void expectWritten(Page page, const std::string &steps, std::uint8_t mode,
                       const std::vector<std::uint8_t> &bytes)
    {
        SCOPED_TRACE(steps);
        CommonRecord record;
        record.fill(0xEE);
        load(EditedPedal, CONTINUOUS_KEY_OUTPUT, record);
        std::ranges::copy(bytes, record.begin());
        open(page);
        SelectedPedalNo = 1; // a read of the unit may change it
        PedalName = QStringLiteral("Left Pedal");
        perform(steps);
        requests.clear();
        boxes.forgetMessages();
        boxes.answerWith(Qt::Key_Return);
        click("OK");
        EXPECT_FALSE(isDialogShown());
        EXPECT_EQ(boxes.messages(), Success);
        EXPECT_EQ(unit.memory().pedals[EditedPedal].mode, mode);
        EXPECT_EQ(unit.memory().pedals[EditedPedal].record, record);
        EXPECT_EQ(requests.size(), 2U) << "record and parameters";
    }
};

TEST_F(AdvancedDialogTest, OpensOnTheClickPageAndSendsNothingOnCancelOrWithoutLeave)
{
    const UnitMemory before = unit.memory();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        open();
        EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Advanced settings"));
        EXPECT_EQ(tabs()->currentIndex(), Click);
        EXPECT_EQ(label("Label_PedalName"), "Advanced settings  Left End Pedal");
        QTest::keyClick(key == Qt::Key_Escape ? dialog() : control("Cancel"), key);
        EXPECT_FALSE(isDialogShown());
    }
    open(PointerMovement, false);
    click("OK");
    EXPECT_FALSE(isDialogShown());
    runTicks(2);
    hid::Report oneWay;
    oneWay.fill(0xFF);
    std::ranges::copy(std::array<std::uint8_t, 3>{GET_ADDITIONAL_DATA, EditedPedal, 0},
                      oneWay.begin());
    EXPECT_EQ(requests, std::vector(5, oneWay));
    EXPECT_EQ(unit.memory(), before);
    EXPECT_EQ(boxes.messages(), QStringList());
}

TEST_F(AdvancedDialogTest, EveryControlIsNamedAndReachedByTab)
{
    const std::vector<std::string> pages{
        " +Click +Left button -Right button -Middle button -Left button -Right button "
        "-Middle button +Click these buttons together, instead of one -Left button -Right button "
        "-Middle button +OK +Cancel",
        " +Key output +A key WITHOUT modifiers -A key WITH modifiers -ONLY modifiers +Key "
        "+Left control +Left shift +Left option +Left command +Right control +Right shift "
        "+Right option +Right command +OK +Cancel",
        " +Pointer movement -Upper left -Up -Upper right -Left +Right -Lower left -Down "
        "-Lower right +Speed +Speed, value +Accelerated -Acceleration -Acceleration, value "
        "+Until the pedal is released -Set number: -Number of repeats +OK +Cancel",
        " +Multiple key output +Outputs +Keys +On time, ms +Time between, ms "
        "+Until the pedal is released -Set number: +Number of repeats +Outputs -Series -OK "
        "+Cancel",
    };
    open();
    for (const std::string &names : pages) {
        EXPECT_EQ(tabOrder(), names);
        tabs()->setCurrentIndex(tabs()->currentIndex() + 1);
    }
    const auto *keys = dialog()->findChild<QComboBox *>(QStringLiteral("KO_listboxKeys"));
    EXPECT_EQ(keys->itemText(0) + keys->itemText(3), QStringLiteral("ad"));
}

TEST_F(AdvancedDialogTest, ClickPageShowsTheRecordAndPutsImpossibleClicksRight)
{
    const std::string plural = "LeftClick PluralButtonSimultaneousClick";
    // Mode, clicks in the record, buttons that are on, clicks in the record afterwards.
    const std::vector<std::tuple<std::uint8_t, std::uint8_t, std::string, std::uint8_t>> cases{
        {SIMPLE_CLICK, 1, "LeftClick", 1},
        {SIMPLE_CLICK, 2, "RightClick", 2},
        {SIMPLE_CLICK, 4, "CenterClick", 4},
        {SIMPLE_CLICK, 3, plural + " LeftClick RightClick", 3},
        {SIMPLE_CLICK, 5, plural + " LeftClick CenterClick", 5},
        {SIMPLE_CLICK, 7, plural + " LeftClick RightClick CenterClick", 7},
        {SIMPLE_CLICK, 0, "LeftClick", 1},
        {SIMPLE_CLICK, 8, "LeftClick", 1},
        {SIMPLE_DOUBLE_CLICK, 1, "LeftDoubleClick", 1},
        {SIMPLE_DOUBLE_CLICK, 2, "RightDoubleClick", 2},
        {SIMPLE_DOUBLE_CLICK, 4, "CenterDoubleClick", 4},
        {SIMPLE_DOUBLE_CLICK, 3, "LeftDoubleClick", 1},
        {POINTER_MOVE, 9, "LeftClick", 9},
    };
    for (const auto &[mode, clicks, buttons, clicksAfterwards] : cases) {
        SCOPED_TRACE(testing::Message() << int{mode} << ", " << int{clicks});
        load(EditedPedal, mode, {clicks, 7, 8});
        open();
        EXPECT_EQ(checkedButtons(), buttons);
        const bool isPlural = buttons.starts_with(plural);
        EXPECT_EQ(countEnabled("C_checkbox.*"), isPlural ? 4 : 1);
        EXPECT_EQ(countEnabled("C_radiobutton.*"), isPlural ? 0 : 6);
        EXPECT_EQ(CommonData[EditedPedal], (CommonRecord{clicksAfterwards, 7, 8}));
        click("Cancel");
    }
}

TEST_F(AdvancedDialogTest, ClickPageWritesWhatIsChosen)
{
    const std::string plural = "PluralButtonSimultaneousClick";
    expectWritten(Click, "", SIMPLE_CLICK, {1});
    expectWritten(Click, "radiobuttonRightClick", SIMPLE_CLICK, {2});
    expectWritten(Click, "CenterDoubleClick radiobuttonCenterClick", SIMPLE_CLICK, {4});
    expectWritten(Click, "LeftDoubleClick", SIMPLE_DOUBLE_CLICK, {1});
    expectWritten(Click, "RightDoubleClick", SIMPLE_DOUBLE_CLICK, {2});
    expectWritten(Click, "CenterDoubleClick", SIMPLE_DOUBLE_CLICK, {4});
    expectWritten(Click, plural + " checkboxLeftClick checkboxCenterClick", SIMPLE_CLICK, {5});
    expectWritten(Click, plural + " checkboxRightClick", SIMPLE_CLICK, {2});
    expectWritten(Click, plural, SIMPLE_CLICK, {0});
    expectWritten(Click, "RightDoubleClick " + plural + ' ' + plural, SIMPLE_DOUBLE_CLICK, {2});
}

TEST_F(AdvancedDialogTest, KeyOutputPageWritesModifiersAndKeyUnderThePedalsOwnMode)
{
    constexpr std::uint8_t Own = CONTINUOUS_KEY_OUTPUT;
    expectWritten(KeyOutput, "", Own, {0, 7}); // no key is chosen
    expectWritten(KeyOutput, "Keys=0", Own, {0, 4});
    expectWritten(KeyOutput, "LeftShift Keys=2", Own, {0, 6});
    expectWritten(KeyOutput, "WithModifiers LeftCtrl RightAlt Keys=1", Own, {0x41, 5});
    expectWritten(KeyOutput, "WithModifiers LeftAlt LeftAlt Keys=3", Own, {0, 7});
    expectWritten(KeyOutput, "Keys=1 OnlyModifiers", Own, {0, 0});
    // Each modifier is in a different set of the next rows, so two exchanged modifiers are noticed.
    expectWritten(KeyOutput, "LeftCtrl RightAlt RightWindowsKey OnlyModifiers", Own, {0xC1, 0});
    expectWritten(KeyOutput, "LeftShift RightAlt LeftWindowsKey OnlyModifiers", Own, {0x4A, 0});
    expectWritten(KeyOutput, "LeftAlt LeftWindowsKey RightShift WithModifiers", Own, {0x2C, 7});
    expectWritten(KeyOutput, "RightCtrl RightShift RightWindowsKey OnlyModifiers", Own, {0xB0, 0});
}

TEST_F(AdvancedDialogTest, PointerMovementPageWritesWhatIsChosen)
{
    const auto moves = [&](const char *steps, std::uint8_t x, std::uint8_t y, int speed,
                           int slowness, std::uint8_t isAccelerated, int repeats, int index) {
        std::vector<std::uint8_t> bytes{x, y};
        for (const int number : {speed, slowness, int{isAccelerated}, repeats, speed, index}) {
            bytes.push_back(std::uint8_t(number >> 8));
            bytes.push_back(std::uint8_t(number));
        }
        bytes.erase(bytes.begin() + 6); // the flag has only one byte
        expectWritten(PointerMovement, steps, POINTER_MOVE, bytes);
    };
    moves("", 1, 0, 0, 1000, 0, 0, 1);
    moves("Up SpeedIndex=300", 0, 255, 300, 1000, 0, 0, 1);
    moves("Left Accelerated", 255, 0, 0, 1000, 1, 0, 1);
    moves("Down Accelerated AccelerationIndex=3", 0, 1, 0, 333, 1, 0, 3);
    moves("UpperLeft Accelerated AccelerationIndex=7 Accelerated", 255, 255, 0, 1000, 0, 0, 1);
    moves("LowerRight Accelerated AccelerationIndex=7", 1, 1, 0, 143, 1, 0, 7);
    moves("UpperRight Accelerated AccelerationIndex=1000 SpeedIndex=1000", 1, 255, 1000, 1, 1, 0,
          1000);
    moves("LowerLeft SetNumber NumberOfRepeats_textbox=300", 255, 1, 0, 1000, 0, 300, 1);
    moves("SetNumber NumberOfRepeats_textbox=65535", 1, 0, 0, 1000, 0, 65534, 1);
    moves("SetNumber NumberOfRepeats_textbox=0", 1, 0, 0, 1000, 0, 10, 1);
    moves("SetNumber NumberOfRepeats_textbox=05", 1, 0, 0, 1000, 0, 5, 1);
    moves("SetNumber NumberOfRepeats=513 UntilRelease", 1, 0, 0, 1000, 0, 0, 1);
}

TEST_F(AdvancedDialogTest, SlidersAndSteppersFollowEachOther)
{
    using Pairs = std::vector<std::pair<int, int>>;
    const Pairs byStepper{{2, 397}, {10, 1021}, {100, 2002}, {1000, 3000}, {1, 176}};
    const Pairs bySlider{{150, 1},    {151, 2},    {176, 2},     {1000, 10}, {1500, 32},
                         {2000, 100}, {2999, 998}, {3000, 1000}, {0, 1}};
    for (const QByteArray quantity : {"SpeedIndex", "AccelerationIndex"}) {
        for (const Qt::Key first : {Qt::Key_Up, Qt::Key_Home, Qt::Key_unknown, Qt::Key_Minus}) {
            SCOPED_TRACE(testing::Message() << quantity.data() << ", " << first);
            open(PointerMovement);
            perform("Accelerated");
            auto *slider = control<QSlider>("hscrollbarThousandLog" + quantity);
            auto *stepper = control<QSpinBox>(quantity);
            const auto expect = [&](int position, int index) {
                EXPECT_EQ(slider->value(), position);
                expectNumber(quantity, index);
            };
            EXPECT_TRUE(text(quantity)->isReadOnly());
            EXPECT_NE(text(quantity)->palette(), text("NumberOfRepeats")->palette());
            enterText(text(quantity), "5");
            expect(0, 0);
            // The first change: by the stepper, or by the slider, whose handle does not move.
            QWidget *const chosen = first == Qt::Key_Up ? control(quantity) : slider;
            if (first == Qt::Key_Minus) {
                perform(slider->objectName().toStdString() + "=-25"); // below the minimum
            } else {
                first == Qt::Key_unknown ? WindowTest::click(chosen)
                                         : QTest::keyClick(chosen, first);
            }
            expect(first == Qt::Key_Up ? 176 : 0, 1);
            EXPECT_EQ(stepper->minimum(), 1) << "0 can't be chosen";
            for (const auto &[index, position] : byStepper) {
                stepper->setValue(index);
                expect(position, index);
            }
            QTest::keyClick(slider, Qt::Key_End);
            expect(3000, 1000);
            for (const auto &[position, index] : bySlider) {
                assistance(slider)->valueInterface()->setCurrentValue(position);
                expect(position, index);
            }
            click("Cancel");
        }
    }
}

TEST_F(AdvancedDialogTest, OptionsEnableTheirControls)
{
    open(PointerMovement);
    for (const bool on : {true, false}) {
        perform(on ? "Accelerated SetNumber" : "Accelerated UntilRelease");
        EXPECT_EQ(countEnabled("PM_.*(LogAcceleration|AccelerationIndex_|Repeats_).*"), on ? 5 : 0);
    }
    perform("hscrollbarThousandLogAccelerationIndex=900 AccelerationIndex=5 NumberOfRepeats=5");
    enterText(text("NumberOfRepeats"), "5");
    expectNumber("AccelerationIndex", 0);
    expectNumber("NumberOfRepeats", 10);
    tabs()->setCurrentIndex(MultipleKeyOutput);
    EXPECT_FALSE(control("OK")->isEnabled()) << "the page writes nothing";
    click("UntilRelease"); // it is on, but loading the page has not disabled the number
    for (const bool on : {false, true, false, true}) {
        EXPECT_EQ(countEnabled("PSKO_(.*Repeats_.*|radiobutton(Output|Series))"), on ? 4 : 0);
        perform(on ? "UntilRelease" : "SetNumber");
    }
    perform("SetNumber Series");
    EXPECT_EQ(checkedButtons(), "SetNumber Series");
}

TEST_F(AdvancedDialogTest, FieldsTakeWholeNumbersAndKeepWhatTheyHadOtherwise)
{
    using Entries = std::vector<std::pair<const char *, int>>;
    const QByteArray repeats = "NumberOfRepeats";
    open(PointerMovement);
    ASSERT_TRUE(waitUntil([&] { return dialog()->isActiveWindow(); }));
    perform("SetNumber");
    for (const int limit : {65534, 65535}) {
        SCOPED_TRACE(limit);
        QWidget *const box = control(repeats);
        EXPECT_EQ(text(repeats)->accessibleName(), box->accessibleName());
        perform("NumberOfRepeats_textbox=-41x");
        QTest::keyClick(box, Qt::Key_Up);
        expectNumber(repeats, 42);
        perform("NumberOfRepeats_textbox=99999");
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Tab);
        expectNumber(repeats, limit);
        QTest::keyClick(box, Qt::Key_Down);
        expectNumber(repeats, limit - 1);
        const Entries entries{{"17", 17},    {" 43\t", 43}, {"٤٤", 44},
                              {"۴۵", 45},    {"𝟜𝟞", 46},    {"12345678901234567890", limit},
                              {"-5", 1},     {"x", 40},     {"²", 40},
                              {"1.000", 40}, {"12.7", 40},  {"1e3", 40},
                              {"", 40},      {"0", 40}};
        for (const auto &[entered, taken] : entries) {
            SCOPED_TRACE(entered);
            enterText(text(repeats), "40");
            enterText(text(repeats), entered);
            expectNumber(repeats, taken);
            enterText(text(repeats), "40");
            QGuiApplication::clipboard()->setText(QString::fromUtf8(entered));
            perform("NumberOfRepeats_textbox=");
            QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
            box->setFocus();
            QTest::keyClick(box, Qt::Key_Tab);
            expectNumber(repeats, taken);
        }
        tabs()->setCurrentIndex(MultipleKeyOutput);
    }
    for (const char *field : {"OnTime", "TimeBetween"}) {
        enterText(text(field), "5");
        expectNumber(field, 10);
    }
    tabs()->setLocale(QLocale(QLocale::Persian));
    QTest::keyClick(control(repeats), Qt::Key_Up);
    EXPECT_EQ(text(repeats)->text() + control<QSpinBox>(repeats)->text(), QStringLiteral("۴۱۴۱"));
}

TEST_F(AdvancedDialogTest, MultipleKeyOutputPageShowsTheRecordAndPutsItRight)
{
    constexpr std::uint8_t Psko = PLURAL_SIMULTANEOUS_KEY_OUTPUT;
    const char *const endless = "UntilRelease Output";
    const char *const five = "a] + [b,b,d] + [e] + [f,g] + [h] + [i] + [j] + [k] + [l,none";
    const char *const ten =
        "none,b,d] + [e] + [f,g] + [h] + [i] + [j] + [k] + [l,none,none,none,none,none,z";
    // Output 1 ends at its first missing key. The times are 0xAFF and 0x534 ms.
    const CommonRecord full{0xFF, 0x34, 0xA5, 0x85, 1, 2, 2, 4, 5, 0, 6};
    const CommonRecord most{5, 6, 0, 5, 0xFF, 0xFF, 0, 4, 5};
    // Mode, record, record afterwards, three numbers (on time and time between in ms, repeats),
    // buttons that are on, keys of every line.
    using Case = std::tuple<std::uint8_t, CommonRecord, CommonRecord, std::array<int, 3>,
                            const char *, const char *>;
    const std::vector<Case> cases{
        {Psko, full, full, {0xAFF, 0x534, 0x102}, "SetNumber Series", five},
        {Psko, most, most, {5, 6, 0xFFFF}, "SetNumber Output", five},
        {Psko, {0, 0, 0, 0x81}, {10, 10, 0, 0x81}, {10, 10, 10}, endless, "none"},
        {Psko, {0, 7, 0x10, 0x8C}, {0, 7, 0x10, 0x82}, {256, 7, 10}, endless, "none,b"},
        {Psko, {9, 0, 0, 0x80}, {9, 10, 0, 0x82}, {9, 10, 10}, endless, "none,b"},
        {Psko, {9, 9, 0, 10}, {9, 9, 0, 10}, {9, 9, 10}, endless, ten},
        // The record of another mode is not changed.
        {POINTER_MOVE, {0, 0, 0, 0x8C}, {0, 0, 0, 0x8C}, {10, 10, 10}, endless, "b,b,b] + [3"},
    };
    AdditionalData[EditedPedal] = {1, 5, 0, 9, 0, 0, 0, // the key after the gap does not count
                                   0, 7, 8, 9, 0, 0, 0, 0xFF, 10, 11, 12, 13, 14, 15};
    AdditionalData[EditedPedal][57] = 29;
    for (const auto &[mode, record, recordAfterwards, numbers, buttons, outputs] : cases) {
        SCOPED_TRACE(::testing::PrintToString(record));
        load(EditedPedal, mode, record);
        open(MultipleKeyOutput);
        EXPECT_EQ(CommonData[EditedPedal], recordAfterwards);
        expectNumber("OnTime", numbers[0]);
        expectNumber("TimeBetween", numbers[1]);
        expectNumber("NumberOfRepeats", numbers[2]);
        EXPECT_EQ(checkedButtons(), buttons);
        EXPECT_EQ(countEnabled("PSKO_(.*Repeats_|radiobutton).*"), 6) << "loading disables nothing";
        const auto *list = control<QComboBox>("Output");
        EXPECT_EQ(list->currentIndex(), -1);
        EXPECT_GE(list->view()->minimumWidth(), list->view()->sizeHintForColumn(0));
        const QStringList lines = QString::fromLatin1(outputs).split(QLatin1Char(','));
        ASSERT_EQ(list->count(), lines.size());
        for (int line = 0; line < list->count(); ++line) {
            EXPECT_EQ(list->itemText(line),
                      QStringLiteral("[テスト用modifier名] + [%1]").arg(lines.at(line)));
        }
        const auto *keys = control<QComboBox>("Keys");
        EXPECT_EQ(keys->count(), 232);
        EXPECT_EQ(keys->itemText(0) + keys->itemText(231), QStringLiteral("test0test231"));
        click("Cancel");
    }
}

TEST_F(AdvancedDialogTest, OkWritesToTheUnitThatIsThereIfItHasThePedal)
{
    unit.setLateness(std::chrono::milliseconds(800));
    unit.setFault({.kind = FaultKind::AnswerLate, .exchange = 1});
    open();
    boxes.answerWith(Qt::Key_Return);
    click("OK");
    EXPECT_EQ(boxes.messages(), Success);
    EXPECT_EQ(InputPacketBuffer[0], SET_PARAMETERS) << "not the reply to the dialog's request";

    SimulatedUnit next;
    const UnitMemory before = next.memory();
    for (const bool isUnitHeld : {false, true}) {
        open();
        if (isUnitHeld) {
            NumberOfPedals = EditedPedal; // as if the unit did not have the pedal
        } else {
            bus::unplug(unit);
            bus::plugIn(next);
            ASSERT_TRUE(waitUntil([&] { return showsUnit(next); }));
        }
        boxes.answerWith(Qt::Key_Return);
        click("OK");
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        EXPECT_EQ(boxes.messages().last(), QStringLiteral("sending error"));
        EXPECT_EQ(isDialogShown(), isUnitHeld);
    }
    EXPECT_EQ(next.memory(), before);
}

} // namespace
} // namespace kavelo
