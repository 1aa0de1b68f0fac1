#include "AdvancedSettingDialogViewController.h"
#include "ThousandLogScale.h"
#include "ui_AdvancedSettingDialogViewController.h"

#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace kavelo {
namespace {

using Form = Ui::AdvancedSettingDialogViewController;

constexpr int MaxValue16 = 0xFFFF;
constexpr int MaxRepeats = 0xFFFE;
/// Bytes 4 and 5 hold this divided by the acceleration index, and this itself without acceleration.
constexpr int AccelerationUnit = 1000;

/// A direction as the record has it: 1 is right and down, 255 is left and up.
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

void AdvancedSettingDialogViewController::connectPointerMovementPage()
{
    const std::array<std::pair<QAbstractButton *, Action>, 11> actions{{
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
    connectActions(actions);

    // Screen readers set a slider's or stepper's value as the program does, so this listens to any
    // change; the program blocks the signals of its own.
    const std::array<std::pair<QSlider *, Action>, 2> sliders{{
        {m_ui->PM_hscrollbarThousandLogSpeedIndex,
         &Self::PM_hscrollbarThousandLogSpeedIndex_Scroll},
        {m_ui->PM_hscrollbarThousandLogAccelerationIndex,
         &Self::PM_hscrollbarThousandLogAccelerationIndex_Scroll},
    }};
    for (const auto &[slider, action] : sliders) {
        connect(slider, &QSlider::valueChanged, this, action);
        // The place where the slider stands already can be chosen, too.
        connect(slider, &QSlider::sliderPressed, this, action);
        connect(slider, &QSlider::actionTriggered, this, action);
    }
    connect(m_ui->PM_numericupdownSpeedIndex_stepper, &QSpinBox::valueChanged, this,
            &Self::PM_numericupdownSpeedIndex_stepper_ValueChanged);
    connect(m_ui->PM_numericupdownAccelerationIndex_stepper, &QSpinBox::valueChanged, this,
            &Self::PM_numericupdownAccelerationIndex_stepper_ValueChanged);
    speed().number.keepReadOnly();
    acceleration().number.keepReadOnly();
    repeats_PM().limitText();
    connect(m_ui->PM_numericupdownNumberOfRepeats_textbox, &QLineEdit::textChanged, this,
            &Self::PM_numericupdownNumberOfRepeats_textbox_ValueChanged);
    connect(m_ui->PM_numericupdownNumberOfRepeats_stepper, &QSpinBox::valueChanged, this,
            &Self::PM_numericupdownNumberOfRepeats_stepper_ValueChanged);
}

void AdvancedSettingDialogViewController::chooseDirection(std::size_t direction)
{
    turnOn(m_ui.get()->*Directions.at(direction).radio);
}

AdvancedSettingDialogViewController::LogarithmicIndex AdvancedSettingDialogViewController::speed()
{
    return {m_ui->PM_hscrollbarThousandLogSpeedIndex,
            {m_ui->PM_numericupdownSpeedIndex_textbox, m_ui->PM_numericupdownSpeedIndex_stepper},
            PM_SpeedIndex};
}

AdvancedSettingDialogViewController::LogarithmicIndex
AdvancedSettingDialogViewController::acceleration()
{
    return {m_ui->PM_hscrollbarThousandLogAccelerationIndex,
            {m_ui->PM_numericupdownAccelerationIndex_textbox,
             m_ui->PM_numericupdownAccelerationIndex_stepper},
            PM_AccelerationIndex};
}

NumericUpDown AdvancedSettingDialogViewController::repeats_PM() const
{
    return {m_ui->PM_numericupdownNumberOfRepeats_textbox,
            m_ui->PM_numericupdownNumberOfRepeats_stepper};
}

void AdvancedSettingDialogViewController::takeFromSlider(const LogarithmicIndex &controls)
{
    controls.index = indexAtThousandLog(controls.slider->sliderPosition());
    controls.number.show(controls.index);
    controls.number.stepper->setMinimum(1); // 0 was "not chosen yet"
}

void AdvancedSettingDialogViewController::takeFromStepper(const LogarithmicIndex &controls)
{
    controls.number.copyStepperToText();
    controls.index = controls.number.stepper->value();
    const QSignalBlocker blocker(controls.slider);
    controls.slider->setValue(thousandLogOfIndex(controls.index));
    controls.number.stepper->setMinimum(1); // 0 was "not chosen yet"
}

void AdvancedSettingDialogViewController::PM_checkboxAccelerated_CheckedChanged()
{
    const bool isAccelerated = m_ui->PM_checkboxAccelerated->isChecked();
    acceleration().slider->setEnabled(isAccelerated);
    acceleration().number.setEnabled(isAccelerated);
}

void AdvancedSettingDialogViewController::setRepeatsEnabled_PM(bool enabled)
{
    turnOn(enabled ? m_ui->PM_radiobutttonSetNumber : m_ui->PM_radiobuttonUntilRelease);
    repeats_PM().setEnabled(enabled);
}

void AdvancedSettingDialogViewController::okButtonPressed_PM()
{
    outputMode() = POINTER_MOVE;
    writeDirection();
    const int dotsPerSecond = std::clamp(PM_SpeedIndex, 0, MaxValue16);
    IntoTwoCommonData(dotsPerSecond, 2);
    writeAcceleration();
    IntoTwoCommonData(dotsPerSecond, 9);
    IntoTwoCommonData(std::clamp(PM_AccelerationIndex, 0, MaxValue16), 11);
    writeRepeats();
}

void AdvancedSettingDialogViewController::writeDirection()
{
    for (const auto &[radio, x, y] : Directions) {
        if ((m_ui.get()->*radio)->isChecked()) {
            commonData()[0] = x;
            commonData()[1] = y;
            return;
        }
    }
}

void AdvancedSettingDialogViewController::writeAcceleration()
{
    const bool isAccelerated = m_ui->PM_checkboxAccelerated->isChecked();
    // An index that has not been chosen is 0, which says nothing.
    PM_AccelerationIndex = isAccelerated ? std::max(PM_AccelerationIndex, 1) : 1;
    if (PM_AccelerationIndex <= AccelerationUnit) {
        const double slowness = double{AccelerationUnit} / PM_AccelerationIndex;
        IntoTwoCommonData(static_cast<int>(std::lround(slowness)), 4);
        commonData()[6] = isAccelerated ? 1 : 0;
    }
}

void AdvancedSettingDialogViewController::writeRepeats()
{
    if (m_ui->PM_radiobuttonUntilRelease->isChecked()) {
        IntoTwoCommonData(0, 7);
    } else if (m_ui->PM_radiobutttonSetNumber->isChecked()) {
        const qlonglong repeats = repeats_PM().textbox->text().toLongLong();
        IntoTwoCommonData(static_cast<int>(std::clamp<qlonglong>(repeats, 1, MaxRepeats)), 7);
    }
}

} // namespace kavelo
