#include "AdvancedSettingDialogViewController.h"
#include "TabStops.h"
#include "WindowTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>

namespace kavelo {
namespace {

constexpr int EditedPedal = 3;
const QStringList Success{
    QStringLiteral("The settings of the Left End Pedal have finished successfully.")};

/// A control and what the user does with it by assistive technology or keys: presses a button, or
/// sets a value.
struct Step
{
    const char *control;
    int value = 0;
};
using Steps = std::vector<Step>;

enum Page { Click, KeyOutput, PointerMovement, MultipleKeyOutput };

class AdvancedDialogTest : public WindowTest
{
protected:
    void SetUp() override
    {
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        requests.clear();
    }

    void open(bool settingEnabled = true)
    {
        SelectedPedalNo = EditedPedal;
        PedalName = name(EditedPedal)->text();
        SettingEnabled = settingEnabled;
        window.SetPedal2Advanced_clicked();
    }
    void open(Page page, bool settingEnabled = true)
    {
        open(settingEnabled);
        in<QTabWidget>("tabcontrolPages")->setCurrentIndex(page);
    }
    void openWith(Page page, std::uint8_t mode, const CommonRecord &record)
    {
        OutputMode[EditedPedal] = mode;
        CommonData[EditedPedal] = record;
        open(page);
    }
    AdvancedSettingDialogViewController *dialog()
    {
        return shownDialog<AdvancedSettingDialogViewController>();
    }
    template <class Control>
    Control *in(const char *name)
    {
        return dialog()->findChild<Control *>(QLatin1String(name));
    }
    void click(const char *name) { WindowTest::click(in<QWidget>(name)); }
    /// Sets a field's text as a screen reader does.
    static void enterText(QLineEdit *field, const QString &text)
    {
        QAccessible::queryAccessibleInterface(field)->editableTextInterface()->replaceText(
            0, int(field->text().size()), text);
    }

    void take(const Step &step)
    {
        auto *control = in<QWidget>(step.control);
        ASSERT_NE(control, nullptr) << step.control;
        if (qobject_cast<QAbstractButton *>(control) != nullptr) {
            toggle(control);
        } else if (auto *text = qobject_cast<QLineEdit *>(control)) {
            text->clear();
            QTest::keyClicks(text, QString::number(step.value));
        } else if (auto *list = qobject_cast<QComboBox *>(control)) {
            QTest::keyClick(list, Qt::Key_Home);
            for (int row = 0; row < step.value; ++row) {
                QTest::keyClick(list, Qt::Key_Down);
            }
        } else {
            control->setProperty("value", step.value);
        }
    }
    /// The names of the buttons that are on, and of those that can be used, by prefix.
    QStringList checked(const char *prefix) { return buttons(prefix, &QAbstractButton::isChecked); }
    QStringList enabled(const char *prefix) { return buttons(prefix, &QWidget::isEnabled); }

    /// Takes the steps on a page, presses OK, and looks at the record and at the very bytes sent.
    void expectWritten(Page page, const Steps &steps, std::uint8_t mode, const CommonRecord &record)
    {
        open(page);
        for (const Step &step : steps) {
            take(step);
        }
        requests.clear();
        boxes.answerWith(Qt::Key_Return);
        const qsizetype told = boxes.messages().size();
        click("buttonOK");
        EXPECT_EQ(dialog(), nullptr);
        EXPECT_EQ(boxes.messages().mid(told), Success);
        const PedalMemory &memory = unit.memory().pedals[EditedPedal];
        EXPECT_EQ(memory.mode, mode);
        EXPECT_EQ(memory.record, record);
        ASSERT_EQ(requests.size(), 2U);
        hid::Report sent{SET_OUTPUT_MODE_AND_DATA, EditedPedal, mode};
        std::ranges::copy(record, sent.begin() + 3);
        EXPECT_EQ(requests[0], sent);
        std::ranges::copy(std::array<std::uint8_t, 5>{SET_PARAMETERS, 25, 20, 15, 15},
                          sent.begin());
        EXPECT_EQ(requests[1], sent);
    }

private:
    template <class Property>
    QStringList buttons(const char *namePrefix, Property property)
    {
        const QLatin1String prefix(namePrefix);
        QStringList names;
        for (auto *button : dialog()->findChildren<QAbstractButton *>()) {
            if (button->objectName().startsWith(prefix) && std::invoke(property, button)) {
                names << button->objectName().mid(prefix.size());
            }
        }
        names.sort();
        return names;
    }
};

TEST_F(AdvancedDialogTest, OpensOnTheClickPageAndCancelSendsNothing)
{
    const UnitMemory before = unit.memory();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        open();
        EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Advanced settings"));
        EXPECT_EQ(in<QTabWidget>("tabcontrolPages")->currentIndex(), Click);
        EXPECT_EQ(in<QLabel>("Label_PedalName")->text(),
                  QStringLiteral("Advanced settings  Left End Pedal"));
        QTest::keyClick(key == Qt::Key_Escape ? dialog() : in<QWidget>("buttonCancel"), key);
        EXPECT_EQ(dialog(), nullptr);
    }
    runTicks(2);
    hid::Report oneWay;
    oneWay.fill(0xFF);
    std::ranges::copy(std::array<std::uint8_t, 3>{GET_ADDITIONAL_DATA, EditedPedal, 0},
                      oneWay.begin());
    EXPECT_EQ(requests, std::vector(4, oneWay));
    EXPECT_EQ(unit.memory(), before);
    EXPECT_EQ(boxes.messages(), QStringList());
}

TEST_F(AdvancedDialogTest, WithoutLeaveToWriteOkOnlyCloses)
{
    open(PointerMovement, false);
    click("buttonOK");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(requests.size(), 1U);
    EXPECT_EQ(boxes.messages(), QStringList());
}

TEST_F(AdvancedDialogTest, EveryControlIsNamedAndReachedByTab)
{
    for (const Page page : {Click, KeyOutput, PointerMovement, MultipleKeyOutput}) {
        SCOPED_TRACE(page);
        open(page);
        EXPECT_GE(tabStops(*dialog(), *in<QTabWidget>("tabcontrolPages")).size(), 5U);
        click("buttonCancel");
    }
}

// Click page

struct ClickLoadCase
{
    std::uint8_t mode;
    std::uint8_t clicks;
    const char *checked; // one radio button, or the boxes of simultaneous clicks
    std::uint8_t clicksAfterwards;
};

TEST_F(AdvancedDialogTest, ClickPageShowsTheRecordAndPutsImpossibleClicksRight)
{
    const std::vector<ClickLoadCase> cases{
        {SIMPLE_CLICK, 1, "Left", 1},
        {SIMPLE_CLICK, 2, "Right", 2},
        {SIMPLE_CLICK, 4, "Center", 4},
        {SIMPLE_CLICK, 3, "Left+Right", 3},
        {SIMPLE_CLICK, 5, "Left+Center", 5},
        {SIMPLE_CLICK, 6, "Right+Center", 6},
        {SIMPLE_CLICK, 7, "Left+Right+Center", 7},
        {SIMPLE_CLICK, 0, "Left", 1},
        {SIMPLE_CLICK, 8, "Left", 1},
        {SIMPLE_CLICK, 255, "Left", 1},
        {SIMPLE_DOUBLE_CLICK, 1, "LeftDouble", 1},
        {SIMPLE_DOUBLE_CLICK, 2, "RightDouble", 2},
        {SIMPLE_DOUBLE_CLICK, 4, "CenterDouble", 4},
        {SIMPLE_DOUBLE_CLICK, 3, "LeftDouble", 1},
        {SIMPLE_DOUBLE_CLICK, 0, "LeftDouble", 1},
        {POINTER_MOVE, 2, "Left", 2},
        {SIMPLE_KEY_OUTPUT, 9, "Left", 9},
    };
    for (const ClickLoadCase &load : cases) {
        SCOPED_TRACE(testing::Message() << int{load.mode} << ", " << int{load.clicks});
        openWith(Click, load.mode, {load.clicks, 7, 8});
        QStringList names = QString::fromLatin1(load.checked).split(QLatin1Char('+'));
        const bool isPlural = names.size() > 1;
        for (QString &button : names) {
            button = (isPlural ? QStringLiteral("checkbox%1Click")
                               : QStringLiteral("radiobutton%1Click"))
                         .arg(button);
        }
        if (isPlural) {
            names << QStringLiteral("checkboxPluralButtonSimultaneousClick")
                  << QStringLiteral("radiobuttonLeftClick");
        }
        names.sort();
        EXPECT_EQ(checked("C_"), names);
        EXPECT_EQ(enabled("C_checkbox").size(), isPlural ? 4 : 1);
        EXPECT_EQ(enabled("C_radiobutton").size(), isPlural ? 0 : 6);
        EXPECT_EQ(CommonData[EditedPedal], (CommonRecord{load.clicksAfterwards, 7, 8}));
        click("buttonCancel");
    }
    EXPECT_EQ(requests.size(), cases.size()) << "one request a dialog, none of them a write";
}

TEST_F(AdvancedDialogTest, ClickPageWritesWhatIsChosen)
{
    const char *const plural = "C_checkboxPluralButtonSimultaneousClick";
    const char *const leftBox = "C_checkboxLeftClick";
    const char *const centerBox = "C_checkboxCenterClick";
    struct Case
    {
        Steps steps;
        std::uint8_t mode;
        std::uint8_t clicks;
    };
    const std::vector<Case> cases{
        {{{"C_radiobuttonRightClick"}}, SIMPLE_CLICK, 2},
        {{{"C_radiobuttonRightDoubleClick"}}, SIMPLE_DOUBLE_CLICK, 2},
        {{{"C_radiobuttonLeftDoubleClick"}}, SIMPLE_DOUBLE_CLICK, 1},
        {{{"C_radiobuttonCenterDoubleClick"}}, SIMPLE_DOUBLE_CLICK, 4},
        {{{"C_radiobuttonCenterDoubleClick"}, {"C_radiobuttonCenterClick"}}, SIMPLE_CLICK, 4},
        {{{plural}, {leftBox}, {centerBox}}, SIMPLE_CLICK, 5},
        {{}, SIMPLE_CLICK, 5}, // as it was loaded
        {{{leftBox}, {centerBox}}, SIMPLE_CLICK, 0},
        {{{"C_radiobuttonRightClick"}, {plural}, {"C_radiobuttonLeftClick"}, {plural}},
         SIMPLE_CLICK,
         2},
    };
    CommonRecord record{0, 11, 22, 33, 44, 55, 66, 77, 88, 99, 110, 121, 132};
    CommonData[EditedPedal] = record;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        record[0] = cases[i].clicks;
        expectWritten(Click, cases[i].steps, cases[i].mode, record);
    }
    EXPECT_EQ(contents(EditedPedal)->toPlainText(),
              PedalDescription(EditedPedal).remove(QLatin1Char('\r')));
}

// Key output page

TEST_F(AdvancedDialogTest, KeyOutputPageWritesModifiersAndKeyUnderThePedalsOwnMode)
{
    const char *const with = "KO_radiobuttonWithModifiers";
    const char *const only = "KO_radiobuttonOnlyModifiers";
    const char *const keys = "KO_listboxKeys";
    struct Case
    {
        Steps steps;
        std::uint8_t modifiers;
        std::uint8_t key;
    };
    std::vector<Case> cases{
        {{}, 0, 7}, // no key chosen
        {{{keys, 0}}, 0, 4},
        {{{"KO_checkboxLeftShift"}, {keys, 2}}, 0, 6},
        {{{with}, {"KO_checkboxLeftCtrl"}, {"KO_checkboxRightAlt"}, {keys, 1}}, 0x41, 5},
        {{{keys, 1}, {only}, {"KO_checkboxRightShift"}}, 0x20, 0},
        {{{with}, {"KO_checkboxLeftAlt"}, {"KO_checkboxLeftAlt"}, {keys, 3}}, 0, 7},
        {{{with}}, 0, 7},
    };
    const std::array modifierBoxes{"KO_checkboxLeftCtrl",  "KO_checkboxLeftShift",
                                   "KO_checkboxLeftAlt",   "KO_checkboxLeftWindowsKey",
                                   "KO_checkboxRightCtrl", "KO_checkboxRightShift",
                                   "KO_checkboxRightAlt",  "KO_checkboxRightWindowsKey"};
    for (std::size_t bit = 0; bit < modifierBoxes.size(); ++bit) {
        cases.push_back({{{modifierBoxes.at(bit)}, {only}}, std::uint8_t(1U << bit), 0});
    }
    CommonRecord record{9, 9, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
    OutputMode[EditedPedal] = CONTINUOUS_KEY_OUTPUT;
    CommonData[EditedPedal] = record;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        record[0] = cases[i].modifiers;
        record[1] = cases[i].key;
        expectWritten(KeyOutput, cases[i].steps, CONTINUOUS_KEY_OUTPUT, record);
    }
}

// Pointer movement page

TEST_F(AdvancedDialogTest, SlidersAndSteppersFollowEachOther)
{
    using Pairs = std::vector<std::pair<int, int>>;
    // clang-format off
    const Pairs byStepper{{2, 397}, {10, 1021}, {100, 2002}, {1000, 3000}, {1, 176}};
    const Pairs bySlider{{150, 1}, {151, 2}, {176, 2}, {1000, 10}, {1500, 32}, {2000, 100},
                         {2999, 998}, {3000, 1000}, {0, 1}};
    // clang-format on
    open(PointerMovement);
    click("PM_checkboxAccelerated");
    for (const QByteArray quantity : {"Speed", "Acceleration"}) {
        SCOPED_TRACE(quantity.data());
        const auto control = [&](const char *name) {
            return QString::asprintf(name, quantity.data()).toLatin1();
        };
        auto *slider = in<QSlider>(control("PM_hscrollbarThousandLog%sIndex"));
        auto *stepper = in<QSpinBox>(control("PM_numericupdown%sIndex_stepper"));
        auto *text = in<QLineEdit>(control("PM_numericupdown%sIndex_textbox"));
        EXPECT_TRUE(text->isReadOnly());
        enterText(text, QStringLiteral("5"));
        EXPECT_EQ(text->text(), QStringLiteral("0"));

        // The first choice: the slider's handle, which stays where it is, or the stepper.
        const bool isBySlider = quantity == "Speed";
        isBySlider ? WindowTest::click(slider) : QTest::keyClick(stepper, Qt::Key_Up);
        EXPECT_EQ(text->text(), QStringLiteral("1"));
        EXPECT_EQ(slider->value(), isBySlider ? 0 : 176);
        QTest::keyClick(stepper, Qt::Key_Down);
        EXPECT_EQ(text->text(), QStringLiteral("1")) << "0 can't be chosen";
        for (const auto &[index, position] : byStepper) {
            stepper->setValue(index);
            EXPECT_EQ(slider->value(), position);
            EXPECT_EQ(text->text(), QString::number(index));
        }
        QTest::keyClick(slider, Qt::Key_End);
        EXPECT_EQ(stepper->value(), 1000);
        for (const auto &[position, index] : bySlider) {
            slider->setValue(position);
            EXPECT_EQ(slider->value(), position);
            EXPECT_EQ(stepper->value(), index);
            EXPECT_EQ(text->text(), QString::number(index));
        }
    }
}

TEST_F(AdvancedDialogTest, PointerMovementPageWritesWhatIsChosen)
{
    const char *const speed = "PM_numericupdownSpeedIndex_stepper";
    const char *const accelerated = "PM_checkboxAccelerated";
    const char *const acceleration = "PM_numericupdownAccelerationIndex_stepper";
    const char *const setNumber = "PM_radiobutttonSetNumber";
    const char *const repeats = "PM_numericupdownNumberOfRepeats_textbox";
    const char *const repeatStepper = "PM_numericupdownNumberOfRepeats_stepper";
    struct Case
    {
        Steps steps;
        CommonRecord record;
    };
    // clang-format off
    const std::vector<Case> cases{
        {{}, {1, 0, 0, 0, 3, 0xE8, 0, 0, 0, 0, 0, 0, 1}},
        {{{"PM_radiobuttonUp"}, {speed, 300}}, {0, 255, 1, 44, 3, 0xE8, 0, 0, 0, 1, 44, 0, 1}},
        {{{"PM_radiobuttonLeft"}, {accelerated}}, {255, 0, 0, 0, 3, 0xE8, 1, 0, 0, 0, 0, 0, 1}},
        {{{"PM_radiobuttonDown"}, {accelerated}, {acceleration, 3}}, {0, 1, 0, 0, 1, 77, 1, 0, 0, 0, 0, 0, 3}},
        {{{"PM_radiobuttonUpperLeft"}, {accelerated}, {acceleration, 7}, {accelerated}}, {255, 255, 0, 0, 3, 0xE8, 0, 0, 0, 0, 0, 0, 1}},
        {{{"PM_radiobuttonLowerRight"}, {accelerated}, {acceleration, 7}}, {1, 1, 0, 0, 0, 143, 1, 0, 0, 0, 0, 0, 7}},
        {{{"PM_radiobuttonUpperRight"}, {accelerated}, {acceleration, 1000}, {speed, 1000}}, {1, 255, 3, 0xE8, 0, 1, 1, 0, 0, 3, 0xE8, 3, 0xE8}},
        {{{"PM_radiobuttonLowerLeft"}, {setNumber}, {repeats, 300}}, {255, 1, 0, 0, 3, 0xE8, 0, 1, 44, 0, 0, 0, 1}},
        {{{setNumber}, {repeats, 65535}}, {1, 0, 0, 0, 3, 0xE8, 0, 0xFF, 0xFE, 0, 0, 0, 1}},
        {{{setNumber}, {repeats, 70000}}, {1, 0, 0, 0, 3, 0xE8, 0, 0xFF, 0xFE, 0, 0, 0, 1}},
        {{{setNumber}, {repeats, 0}}, {1, 0, 0, 0, 3, 0xE8, 0, 0, 1, 0, 0, 0, 1}},
        {{{setNumber}, {repeatStepper, 513}}, {1, 0, 0, 0, 3, 0xE8, 0, 2, 1, 0, 0, 0, 1}},
        {{{setNumber}, {repeatStepper, 513}, {"PM_radiobuttonUntilRelease"}}, {1, 0, 0, 0, 3, 0xE8, 0, 0, 0, 0, 0, 0, 1}},
    };
    // clang-format on
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        CommonData[EditedPedal].fill(0xEE);
        expectWritten(PointerMovement, cases[i].steps, POINTER_MOVE, cases[i].record);
    }
}

TEST_F(AdvancedDialogTest, OptionsEnableTheirControls)
{
    open(PointerMovement);
    const auto isEnabled = [&](const char *name) { return in<QWidget>(name)->isEnabled(); };
    for (const bool on : {true, false}) {
        take({"PM_checkboxAccelerated"});
        take({on ? "PM_radiobutttonSetNumber" : "PM_radiobuttonUntilRelease"});
        for (const char *name : {"PM_hscrollbarThousandLogAccelerationIndex",
                                 "PM_numericupdownAccelerationIndex_stepper",
                                 "PM_numericupdownAccelerationIndex_textbox",
                                 "PM_numericupdownNumberOfRepeats_textbox",
                                 "PM_numericupdownNumberOfRepeats_stepper"}) {
            EXPECT_EQ(isEnabled(name), on) << name;
        }
    }

    in<QTabWidget>("tabcontrolPages")->setCurrentIndex(MultipleKeyOutput);
    EXPECT_FALSE(isEnabled("buttonOK")) << "the page writes nothing";
    click("PSKO_radiobuttonUntilRelease"); // which is on, but loading enables and disables nothing
    for (const bool on : {false, true, false, true}) {
        for (const char *name : {"PSKO_numericupdownNumberOfRepeats_textbox",
                                 "PSKO_numericupdownNumberOfRepeats_stepper",
                                 "PSKO_radiobuttonOutput", "PSKO_radiobuttonSeries"}) {
            EXPECT_EQ(isEnabled(name), on) << name;
        }
        take({on ? "PSKO_radiobuttonUntilRelease" : "PSKO_radiobuttonSetNumber"});
    }
    take({"PSKO_radiobuttonSetNumber"});
    take({"PSKO_radiobuttonSeries"});
    EXPECT_EQ(checked("PSKO_"), (QStringList{QStringLiteral("radiobuttonSeries"),
                                             QStringLiteral("radiobuttonSetNumber")}));
    click("buttonCancel");
}

TEST_F(AdvancedDialogTest, FieldsAndTheirSteppersFollowEachOtherWithinTheLimits)
{
    const auto expectPair = [&](const char *field, int limit) {
        SCOPED_TRACE(field);
        auto *text = in<QLineEdit>(QByteArray(field) + "_textbox");
        auto *stepper = in<QSpinBox>(QByteArray(field) + "_stepper");
        const auto expectBoth = [&](int number) {
            EXPECT_EQ(text->text(), QString::number(number));
            EXPECT_EQ(stepper->value(), number);
        };
        text->clear();
        QTest::keyClicks(text, QStringLiteral("-41x"));
        QTest::keyClick(stepper, Qt::Key_Up);
        expectBoth(42);
        text->clear();
        QTest::keyClicks(text, QStringLiteral("99999"));
        expectBoth(limit);
        QTest::keyClick(stepper, Qt::Key_Down);
        expectBoth(limit - 1);
        for (const auto &[entered, taken] : {std::pair{"17", 17},
                                             {"x", 17},
                                             {"70000", limit},
                                             {"12345678901234567890", limit},
                                             {"-5", 1}}) {
            enterText(text, QLatin1String(entered));
            expectBoth(taken);
        }
    };
    open(PointerMovement);
    click("PM_radiobutttonSetNumber");
    expectPair("PM_numericupdownNumberOfRepeats", 65534);
    in<QTabWidget>("tabcontrolPages")->setCurrentIndex(MultipleKeyOutput);
    expectPair("PSKO_numericupdownNumberOfRepeats", 65535);
    for (const char *name :
         {"PSKO_numericupdownOnTime_textbox", "PSKO_numericupdownTimeBetween_textbox"}) {
        enterText(in<QLineEdit>(name), QStringLiteral("5"));
        EXPECT_EQ(in<QLineEdit>(name)->text(), QStringLiteral("10"));
    }
    click("buttonCancel");
}

// Multiple key output page

struct SequenceCase
{
    std::uint8_t mode;
    CommonRecord record;
    CommonRecord recordAfterwards; // {}: as before
    int onTime;                    // ms, as timeBetween
    int timeBetween;
    int repeats;
    const char *repeat; // the radio buttons that are on
    const char *unit;
    const char *outputs; // the keys of every line
};

TEST_F(AdvancedDialogTest, MultipleKeyOutputPageShowsTheRecordAndPutsItRight)
{
    constexpr std::uint8_t Psko = PLURAL_SIMULTANEOUS_KEY_OUTPUT;
    const char *const five = "a] + [b,b,d] + [e] + [f,g] + [h] + [i] + [j] + [k] + [l,none";
    const char *const ten =
        "none,b,d] + [e] + [f,g] + [h] + [i] + [j] + [k] + [l,none,none,none,none,none,z";
    // clang-format off
    const std::vector<SequenceCase> cases{
        // Output 1 ends at its first missing key; 0xAFF and 0x534 ms.
        {Psko, {0xFF, 0x34, 0xA5, 0x85, 1, 2, 2, 4, 5, 0, 6}, {}, 0xAFF, 0x534, 0x102, "SetNumber", "Series", five},
        {Psko, {5, 6, 0, 5, 0xFF, 0xFF, 0, 4, 5}, {}, 5, 6, 0xFFFF, "SetNumber", "Output", five},
        {Psko, {0, 0, 0, 0x81}, {10, 10, 0, 0x81}, 10, 10, 10, "UntilRelease", "Output", "none"},
        {Psko, {0, 7, 0x10, 0x8C}, {0, 7, 0x10, 0x82}, 256, 7, 10, "UntilRelease", "Output", "none,b"},
        {Psko, {9, 0, 0, 0x80}, {9, 10, 0, 0x82}, 9, 10, 10, "UntilRelease", "Output", "none,b"},
        {Psko, {9, 9, 0, 127}, {9, 9, 0, 2}, 9, 9, 10, "UntilRelease", "Output", "none,b"},
        {Psko, {9, 9, 0, 10}, {}, 9, 9, 10, "UntilRelease", "Output", ten},
        // Another mode's record is left alone.
        {POINTER_MOVE, {0, 0, 0, 0x8C}, {}, 10, 10, 10, "UntilRelease", "Output", "b,b,b] + [3"},
    };
    // clang-format on
    AdditionalData[EditedPedal] = {1, 5, 0, 9, 0, 0, 0, // the key behind the gap does not count
                                   0, 7, 8, 9, 0, 0, 0, 0xFF, 10, 11, 12, 13, 14, 15};
    AdditionalData[EditedPedal][57] = 29;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        const SequenceCase &sequence = cases[i];
        openWith(MultipleKeyOutput, sequence.mode, sequence.record);
        EXPECT_EQ(CommonData[EditedPedal], sequence.recordAfterwards == CommonRecord{}
                                               ? sequence.record
                                               : sequence.recordAfterwards);
        const std::array<std::pair<const char *, int>, 3> numbers{
            {{"OnTime", sequence.onTime},
             {"TimeBetween", sequence.timeBetween},
             {"NumberOfRepeats", sequence.repeats}}};
        for (const auto &[field, number] : numbers) {
            const auto control = [name = field](const char *kind) {
                return QString::asprintf("PSKO_numericupdown%s_%s", name, kind).toLatin1();
            };
            EXPECT_EQ(in<QLineEdit>(control("textbox"))->text(), QString::number(number)) << field;
            EXPECT_EQ(in<QSpinBox>(control("stepper"))->value(), number) << field;
        }
        QStringList radios{QLatin1String(sequence.repeat), QLatin1String(sequence.unit)};
        radios.sort();
        EXPECT_EQ(checked("PSKO_radiobutton"), radios);
        EXPECT_EQ(enabled("PSKO_radiobutton").size(), 4) << "loading disables nothing";
        EXPECT_TRUE(in<QWidget>("PSKO_numericupdownNumberOfRepeats_textbox")->isEnabled());
        EXPECT_TRUE(in<QWidget>("PSKO_numericupdownNumberOfRepeats_stepper")->isEnabled());
        auto *list = in<QComboBox>("PSKO_listboxOutput");
        EXPECT_EQ(list->currentIndex(), -1);
        const QStringList outputs = QString::fromLatin1(sequence.outputs).split(QLatin1Char(','));
        ASSERT_EQ(list->count(), outputs.size());
        for (int line = 0; line < list->count(); ++line) {
            EXPECT_EQ(list->itemText(line),
                      QStringLiteral("[テスト用modifier名] + [%1]").arg(outputs.at(line)));
        }
        auto *keys = in<QComboBox>("PSKO_listboxKeys");
        ASSERT_EQ(keys->count(), 232);
        EXPECT_EQ(keys->itemText(0), QStringLiteral("test0"));
        EXPECT_EQ(keys->itemText(231), QStringLiteral("test231"));
        QTest::keyClick(dialog(), Qt::Key_Escape);
    }
    runTicks(2);
    EXPECT_EQ(requests.size(), cases.size()) << "one request a dialog, none of them a write";
}

// The unit

class AdvancedTroubleTest : public AdvancedDialogTest,
                            public ::testing::WithParamInterface<FaultKind>
{
};

TEST_P(AdvancedTroubleTest, AWriteAfterwardsGetsItsOwnReplies)
{
    unit.setLateness(std::chrono::milliseconds(800));
    unit.setFault({.kind = GetParam(), .exchange = 1});
    open(Click);
    if (GetParam() == FaultKind::Unplug) {
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
        EXPECT_NE(dialog(), nullptr);
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
    }
    click("C_radiobuttonRightDoubleClick");
    boxes.answerWith(Qt::Key_Return);
    click("buttonOK");
    EXPECT_EQ(boxes.messages(), Success);
    EXPECT_EQ(InputPacketBuffer[0], SET_PARAMETERS);
    EXPECT_EQ(unit.memory().pedals[EditedPedal].mode, SIMPLE_DOUBLE_CLICK);
    runTicks(2);
    EXPECT_TRUE(showsUnit(unit));
}

INSTANTIATE_TEST_SUITE_P(OneWayRequest, AdvancedTroubleTest,
                         ::testing::Values(FaultKind::AnswerLate, FaultKind::DropReply,
                                           FaultKind::RefuseSend, FaultKind::Unplug));

TEST_F(AdvancedDialogTest, OkWithoutAUnitOrForAPedalThatIsGoneClaimsNoSuccess)
{
    open(Click);
    bus::unplug(unit);
    ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
    click("buttonOK");
    EXPECT_EQ(dialog(), nullptr);

    open(Click);
    unit.memory().numberOfPedals = 2;
    const UnitMemory before = unit.memory();
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
    click("buttonOK");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(boxes.messages(), QStringList());
    ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
    EXPECT_EQ(unit.memory(), before);
}

TEST_F(AdvancedDialogTest, AUnitThatGoesDuringOkIsToldAndClosesTheDialog)
{
    open(PointerMovement);
    runTicks(1);
    unit.setFault({.kind = FaultKind::Unplug, .exchange = 1});
    boxes.answerWith(Qt::Key_Return);
    click("buttonOK");
    EXPECT_EQ(boxes.messages(), QStringList{QStringLiteral("timeout")});
    EXPECT_EQ(dialog(), nullptr);
    ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
}

} // namespace
} // namespace kavelo
