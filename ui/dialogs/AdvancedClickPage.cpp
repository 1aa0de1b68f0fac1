#include "AdvancedClickPage.h"

#include "Choice.h"
#include "ui_AdvancedClickPage.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kavelo {
namespace {

using Form = Ui::AdvancedClickPage;

constexpr std::uint8_t LeftClick = 1;
constexpr std::uint8_t RightClick = 2;
constexpr std::uint8_t CenterClick = 4;
constexpr std::uint8_t AllClicks = LeftClick | RightClick | CenterClick;

/// A click or double click of one button, with its output mode and the button mask of the record.
struct ClickChoice
{
    QRadioButton *Form::*radio;
    std::uint8_t mode;
    std::uint8_t clicks;
};

constexpr std::array<ClickChoice, 6> ClickChoices{{
    {&Form::C_radiobuttonLeftClick, SIMPLE_CLICK, LeftClick},
    {&Form::C_radiobuttonRightClick, SIMPLE_CLICK, RightClick},
    {&Form::C_radiobuttonCenterClick, SIMPLE_CLICK, CenterClick},
    {&Form::C_radiobuttonLeftDoubleClick, SIMPLE_DOUBLE_CLICK, LeftClick},
    {&Form::C_radiobuttonRightDoubleClick, SIMPLE_DOUBLE_CLICK, RightClick},
    {&Form::C_radiobuttonCenterDoubleClick, SIMPLE_DOUBLE_CLICK, CenterClick},
}};

struct ClickBox
{
    QCheckBox *Form::*box;
    std::uint8_t click;
};

constexpr std::array<ClickBox, 3> ClickBoxes{{
    {&Form::C_checkboxLeftClick, LeftClick},
    {&Form::C_checkboxRightClick, RightClick},
    {&Form::C_checkboxCenterClick, CenterClick},
}};

} // namespace

AdvancedClickPage::AdvancedClickPage(QWidget *parent)
    : AdvancedPage(parent)
    , m_ui(std::make_unique<Form>())
{
    using Self = AdvancedClickPage;
    m_ui->setupUi(this);
    const std::array<std::pair<QAbstractButton *, void (Self::*)()>, 10> actions{{
        {m_ui->C_radiobuttonLeftClick, &Self::C_radiobuttonLeftClick_CheckedChanged},
        {m_ui->C_radiobuttonRightClick, &Self::C_radiobuttonRightClick_CheckedChanged},
        {m_ui->C_radiobuttonCenterClick, &Self::C_radiobuttonCenterClick_CheckedChanged},
        {m_ui->C_radiobuttonLeftDoubleClick, &Self::C_radiobuttonLeftDoubleClick_CheckedChanged},
        {m_ui->C_radiobuttonRightDoubleClick, &Self::C_radiobuttonRightDoubleClick_CheckedChanged},
        {m_ui->C_radiobuttonCenterDoubleClick,
         &Self::C_radiobuttonCenterDoubleClick_CheckedChanged},
        {m_ui->C_checkboxPluralButtonSimultaneousClick,
         &Self::C_checkboxPluralButtonSimultaneousClick_CheckedChanged},
        {m_ui->C_checkboxLeftClick, &Self::C_checkboxLeftClick_CheckedChanged},
        {m_ui->C_checkboxRightClick, &Self::C_checkboxRightClick_CheckedChanged},
        {m_ui->C_checkboxCenterClick, &Self::C_checkboxCenterClick_CheckedChanged},
    }};
    for (const auto &[button, action] : actions) {
        connectChoice(button, this, action);
    }
}

AdvancedClickPage::~AdvancedClickPage() = default;

void AdvancedClickPage::load(const PedalRow &pedal)
{
    std::uint8_t &clicks = pedal.commonData[0];
    const bool isSingle = pedal.outputMode == SIMPLE_CLICK;
    const bool isClick = isSingle || pedal.outputMode == SIMPLE_DOUBLE_CLICK;
    const auto findChoice = [&] {
        return std::ranges::find_if(ClickChoices, [&](const ClickChoice &choice) {
            return choice.mode == pedal.outputMode && choice.clicks == clicks;
        });
    };
    auto choice = findChoice();
    const bool isPlural =
        isSingle && choice == ClickChoices.end() && clicks != 0 && clicks <= AllClicks;
    if (isPlural) {
        for (const auto &[box, click] : ClickBoxes) {
            if ((clicks & click) != 0) {
                (m_ui.get()->*box)->setChecked(true);
            }
        }
    } else if (isClick && choice == ClickChoices.end()) {
        clicks = LeftClick;
        choice = findChoice();
    }
    m_ui->C_checkboxPluralButtonSimultaneousClick->setChecked(isPlural);
    QRadioButton *radio =
        choice == ClickChoices.end() ? m_ui->C_radiobuttonLeftClick : m_ui.get()->*choice->radio;
    radio->setChecked(true);
    Change_C_control_VisibleEnabled();
}

void AdvancedClickPage::chooseClick(std::size_t choice)
{
    (m_ui.get()->*ClickChoices.at(choice).radio)->setChecked(true); // the group unchecks others
}

void AdvancedClickPage::Change_C_control_VisibleEnabled()
{
    const bool isPlural = m_ui->C_checkboxPluralButtonSimultaneousClick->isChecked();
    for (const ClickChoice &choice : ClickChoices) {
        (m_ui.get()->*choice.radio)->setEnabled(!isPlural);
    }
    for (const ClickBox &click : ClickBoxes) {
        (m_ui.get()->*click.box)->setEnabled(isPlural);
    }
}

std::uint8_t AdvancedClickPage::simultaneousClicks() const
{
    std::uint8_t clicks = 0;
    for (const auto &[box, click] : ClickBoxes) {
        if ((m_ui.get()->*box)->isChecked()) {
            clicks |= click;
        }
    }
    return clicks;
}

void AdvancedClickPage::okButtonPressed_C(const PedalRow &pedal)
{
    const auto *const choice =
        std::ranges::find_if(ClickChoices, [this](const ClickChoice &candidate) {
            return (m_ui.get()->*candidate.radio)->isChecked();
        });
    if (m_ui->C_checkboxPluralButtonSimultaneousClick->isChecked()) {
        pedal.outputMode = SIMPLE_CLICK;
        pedal.commonData[0] = simultaneousClicks();
    } else if (choice != ClickChoices.end()) {
        pedal.outputMode = choice->mode;
        pedal.commonData[0] = choice->clicks;
    }
}

} // namespace kavelo
