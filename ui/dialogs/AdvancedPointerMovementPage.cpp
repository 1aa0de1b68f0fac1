#include "AdvancedPointerMovementPage.h"

#include "Choice.h"
#include "ThousandLogScale.h"
#include "ui_AdvancedPointerMovementPage.h"

#include <QSignalBlocker>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kavelo {
namespace {

using Form = Ui::AdvancedPointerMovementPage;

/// Bytes 4 and 5 of the record hold this number divided by the acceleration index. Without
/// acceleration they hold this number itself.
constexpr int AccelerationUnit = 1000;

/// A direction as stored in the record. 1 is right or down, 255 is left or up.
struct Direction
{
    QRadioButton *Form::*radio;
    std::uint8_t x;
    std::uint8_t y;
};

constexpr std::array<Direction, 8> Directions{{
    {&Form::PM_radiobuttonUp, 0, 255},
    {&Form::PM_radiobuttonUpperRight, 1, 255},
    {&Form::PM_radiobuttonRight, 1, 0},
    {&Form::PM_radiobuttonLowerRight, 1, 1},
    {&Form::PM_radiobuttonDown, 0, 1},
    {&Form::PM_radiobuttonLowerLeft, 255, 1},
    {&Form::PM_radiobuttonLeft, 255, 0},
    {&Form::PM_radiobuttonUpperLeft, 255, 255},
}};

} // namespace

AdvancedPointerMovementPage::AdvancedPointerMovementPage(QWidget *parent)
    : AdvancedPage(parent)
    , m_ui(std::make_unique<Form>())
{
    using Self = AdvancedPointerMovementPage;
    m_ui->setupUi(this);
    const std::array<std::pair<QAbstractButton *, void (Self::*)()>, 11> actions{{
        {m_ui->PM_radiobuttonUp, &Self::PM_radiobuttonUp_CheckedChanged},
        {m_ui->PM_radiobuttonUpperRight, &Self::PM_radiobuttonUpperRight_CheckedChanged},
        {m_ui->PM_radiobuttonRight, &Self::PM_radiobuttonRight_CheckedChanged},
        {m_ui->PM_radiobuttonLowerRight, &Self::PM_radiobuttonLowerRight_CheckedChanged},
        {m_ui->PM_radiobuttonDown, &Self::PM_radiobuttonDown_CheckedChanged},
        {m_ui->PM_radiobuttonLowerLeft, &Self::PM_radiobuttonLowerLeft_CheckedChanged},
        {m_ui->PM_radiobuttonLeft, &Self::PM_radiobuttonLeft_CheckedChanged},
        {m_ui->PM_radiobuttonUpperLeft, &Self::PM_radiobuttonUpperLeft_CheckedChanged},
        {m_ui->PM_checkboxAccelerated, &Self::PM_checkboxAccelerated_CheckedChanged},
        {m_ui->PM_radiobuttonUntilRelease, &Self::PM_radiobuttonUntilRelease_CheckedChanged},
        {m_ui->PM_radiobutttonSetNumber, &Self::PM_radiobutttonSetNumber_CheckedChanged},
    }};
    for (const auto &[button, action] : actions) {
        connectChoice(button, this, action);
    }
    connect(m_ui->PM_hscrollbarThousandLogSpeedIndex, &IndexSlider::chosen, this,
            &Self::PM_hscrollbarThousandLogSpeedIndex_Scroll);
    connect(m_ui->PM_hscrollbarThousandLogAccelerationIndex, &IndexSlider::chosen, this,
            &Self::PM_hscrollbarThousandLogAccelerationIndex_Scroll);
    connect(m_ui->PM_numericupdownSpeedIndex_stepper, &QSpinBox::valueChanged, this,
            &Self::PM_numericupdownSpeedIndex_stepper_ValueChanged);
    connect(m_ui->PM_numericupdownAccelerationIndex_stepper, &QSpinBox::valueChanged, this,
            &Self::PM_numericupdownAccelerationIndex_stepper_ValueChanged);
}

AdvancedPointerMovementPage::~AdvancedPointerMovementPage() = default;

void AdvancedPointerMovementPage::chooseDirection(std::size_t direction)
{
    (m_ui.get()->*Directions.at(direction).radio)->setChecked(true); // the group unchecks others
}

AdvancedPointerMovementPage::LogarithmicIndex AdvancedPointerMovementPage::speed()
{
    return {m_ui->PM_hscrollbarThousandLogSpeedIndex, m_ui->PM_numericupdownSpeedIndex_stepper,
            PM_SpeedIndex};
}

AdvancedPointerMovementPage::LogarithmicIndex AdvancedPointerMovementPage::acceleration()
{
    return {m_ui->PM_hscrollbarThousandLogAccelerationIndex,
            m_ui->PM_numericupdownAccelerationIndex_stepper, PM_AccelerationIndex};
}

void AdvancedPointerMovementPage::takeFromSlider(const LogarithmicIndex &controls)
{
    controls.index = indexAtThousandLog(controls.slider->sliderPosition());
    const QSignalBlocker blocker(controls.number);
    controls.number->setValue(controls.index);
    controls.number->setMinimum(1); // 0 meant "not chosen yet"
}

void AdvancedPointerMovementPage::takeFromStepper(const LogarithmicIndex &controls)
{
    controls.index = controls.number->value();
    controls.slider->setValue(thousandLogOfIndex(controls.index));
    controls.number->setMinimum(1); // 0 meant "not chosen yet"
}

void AdvancedPointerMovementPage::PM_checkboxAccelerated_CheckedChanged()
{
    const bool isAccelerated = m_ui->PM_checkboxAccelerated->isChecked();
    acceleration().slider->setEnabled(isAccelerated);
    acceleration().number->setEnabled(isAccelerated);
}

void AdvancedPointerMovementPage::setRepeatsEnabled(bool enabled)
{
    QRadioButton *radio =
        enabled ? m_ui->PM_radiobutttonSetNumber : m_ui->PM_radiobuttonUntilRelease;
    radio->setChecked(true);
    m_ui->PM_numericupdownNumberOfRepeats_stepper->setEnabled(enabled);
}

void AdvancedPointerMovementPage::okButtonPressed_PM(const PedalRow &pedal)
{
    pedal.outputMode = POINTER_MOVE;
    writeDirection(pedal.commonData);
    storeValue16(pedal.commonData, PM_SpeedIndex, 2);
    writeAcceleration(pedal.commonData);
    storeValue16(pedal.commonData, PM_SpeedIndex, 9);
    storeValue16(pedal.commonData, PM_AccelerationIndex, 11);
    writeRepeats(pedal.commonData);
}

void AdvancedPointerMovementPage::writeDirection(CommonRecord &record) const
{
    for (const auto &[radio, x, y] : Directions) {
        if ((m_ui.get()->*radio)->isChecked()) {
            record[0] = x;
            record[1] = y;
            return;
        }
    }
}

void AdvancedPointerMovementPage::writeAcceleration(CommonRecord &record)
{
    const bool isAccelerated = m_ui->PM_checkboxAccelerated->isChecked();
    // An index of 0 has not been chosen yet; the record then gets index 1.
    PM_AccelerationIndex = isAccelerated ? std::max(PM_AccelerationIndex, 1) : 1;
    if (PM_AccelerationIndex <= AccelerationUnit) {
        const double slowness = double{AccelerationUnit} / PM_AccelerationIndex;
        storeValue16(record, static_cast<int>(std::lround(slowness)), 4);
        record[6] = isAccelerated ? 1 : 0;
    }
}

void AdvancedPointerMovementPage::writeRepeats(CommonRecord &record)
{
    if (m_ui->PM_radiobuttonUntilRelease->isChecked()) {
        storeValue16(record, 0, 7);
    } else if (m_ui->PM_radiobutttonSetNumber->isChecked()) {
        NumericUpDown *repeats = m_ui->PM_numericupdownNumberOfRepeats_stepper;
        repeats->interpretText(); // OK may be pressed while the field has the focus
        storeValue16(record, repeats->value(), 7);
    }
}

} // namespace kavelo
