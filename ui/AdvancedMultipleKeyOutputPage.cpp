#include "AdvancedSettingDialogViewController.h"
#include "ModifierName.h"
#include "ui_AdvancedSettingDialogViewController.h"

#include <QAbstractItemView>

namespace kavelo {
namespace {

constexpr int DEFAULT_NUMBER_OF_REPEATS = 10;
constexpr std::uint8_t DefaultTime = 10; // ms
constexpr std::uint8_t DefaultOutputs = 2;
constexpr std::uint8_t RepeatUnitBit = 0x80;

constexpr int PlaceholderKeys = 232;

/// Copies an output's modifier and keys up to the first place without a key; returns the place of
/// the last key copied. Key 1 is copied also when it is none.
int decodeOutput(PskoOutput from, std::array<std::uint8_t, PskoOutputSize> &to)
{
    to[0] = from[0];
    to[1] = from[1];
    std::size_t last = 1;
    while (last + 1 < from.size() && from[last + 1] != 0) {
        ++last;
        to.at(last) = from[last];
    }
    return static_cast<int>(last);
}

} // namespace

void AdvancedSettingDialogViewController::connectMultipleKeyOutputPage()
{
    const std::array<std::pair<QAbstractButton *, Action>, 4> actions{{
        {m_ui->PSKO_radiobuttonUntilRelease, &Self::PSKO_radiobuttonUntilRelease_CheckedChanged},
        {m_ui->PSKO_radiobuttonSetNumber, &Self::PSKO_radiobuttonSetNumber_CheckedChanged},
        {m_ui->PSKO_radiobuttonOutput, &Self::PSKO_radiobuttonOutput_CheckedChanged},
        {m_ui->PSKO_radiobuttonSeries, &Self::PSKO_radiobuttonSeries_CheckedChanged},
    }};
    connectActions(actions);
    onTime_PSKO().keepReadOnly();
    timeBetween_PSKO().keepReadOnly();
    repeats_PSKO().limitText();
    connect(m_ui->PSKO_numericupdownNumberOfRepeats_textbox, &QLineEdit::textChanged, this,
            &Self::PSKO_numericupdownNumberOfRepeats_textbox_ValueChanged);
    connect(m_ui->PSKO_numericupdownNumberOfRepeats_stepper, &QSpinBox::valueChanged, this,
            &Self::PSKO_numericupdownNumberOfRepeats_stepper_ValueChanged);
    connect(m_ui->PSKO_listboxOutput, &QComboBox::activated, this,
            &Self::PSKO_listboxOutput_SelectedIndexChanged);
}

void AdvancedSettingDialogViewController::resetMultipleKeyOutput()
{
    PSKO_KeyData = {};
    PSKO_NumberOfKeys.fill(1);
    PSKO_NumberOfKeysOriginal.fill(1);
    PSKO_SelectedKey.fill(1);
    PSKO_NewOutputCharacter = 4;
    PSKO_NewKeyNumber.fill(31);
    PSKO_Changing = true;
    for (int number = 0; number < PlaceholderKeys; ++number) {
        m_ui->PSKO_listboxKeys->addItem(QStringLiteral("test%1").arg(number));
    }
    PSKO_Changing = false;
}

void AdvancedSettingDialogViewController::loadMultipleKeyOutputPage()
{
    if (outputMode() == PLURAL_SIMULTANEOUS_KEY_OUTPUT) {
        decodeTimes();
        decodeRepeats();
        decodeOutputs();
    } else {
        showSampleOutputs();
    }
}

void AdvancedSettingDialogViewController::decodeTimes()
{
    if (pskoSettingIn(commonData()).onTime == 0) {
        commonData()[0] = DefaultTime;
    }
    if (pskoSettingIn(commonData()).timeBetween == 0) {
        commonData()[1] = DefaultTime;
    }
    const PskoSetting setting = pskoSettingIn(commonData());
    onTime_PSKO().show(setting.onTime);
    timeBetween_PSKO().show(setting.timeBetween);
}

void AdvancedSettingDialogViewController::decodeRepeats()
{
    const PskoSetting setting = pskoSettingIn(commonData());
    const bool untilRelease = setting.numberOfRepeats == 0;
    turnOn(untilRelease ? m_ui->PSKO_radiobuttonUntilRelease : m_ui->PSKO_radiobuttonSetNumber);
    repeats_PSKO().show(untilRelease ? DEFAULT_NUMBER_OF_REPEATS : setting.numberOfRepeats);
    turnOn(!untilRelease && setting.repeatsSet ? m_ui->PSKO_radiobuttonSeries
                                               : m_ui->PSKO_radiobuttonOutput);
}

void AdvancedSettingDialogViewController::decodeOutputs()
{
    PSKO_NumberOfOutput = pskoSettingIn(commonData()).numberOfOutputs;
    if (PSKO_NumberOfOutput == 0 || PSKO_NumberOfOutput > NUMBER_OF_PSKO_OUTPUT) {
        PSKO_NumberOfOutput = DefaultOutputs;
        commonData()[3] =
            static_cast<std::uint8_t>((commonData()[3] & RepeatUnitBit) | DefaultOutputs);
    }
    for (int output = 0; output < PSKO_NumberOfOutput; ++output) {
        const auto row = static_cast<std::size_t>(output);
        const int lastKey = decodeOutput(pskoOutputIn(commonData(), additionalData(), output + 1),
                                         PSKO_KeyData.at(row));
        PSKO_NumberOfKeys.at(row) = lastKey;
        PSKO_NumberOfKeysOriginal.at(row) = lastKey;
    }
}

void AdvancedSettingDialogViewController::showSampleOutputs()
{
    const auto newCharacter = static_cast<std::uint8_t>(PSKO_NewOutputCharacter + 1);
    PSKO_KeyData[0] = {LeftShift, newCharacter};
    PSKO_KeyData[1] = {0, newCharacter};
    PSKO_KeyData[2] = {0, newCharacter, static_cast<std::uint8_t>(PSKO_NewKeyNumber[2] + 1)};
    PSKO_NumberOfKeys[2] = 2;
    PSKO_NumberOfKeysOriginal[2] = 2;
    PSKO_NumberOfOutput = 3;
    turnOn(m_ui->PSKO_radiobuttonUntilRelease);
    repeats_PSKO().show(DEFAULT_NUMBER_OF_REPEATS);
    turnOn(m_ui->PSKO_radiobuttonOutput);
}

void AdvancedSettingDialogViewController::PSKO_SetControls()
{
    PSKO_Changing = true;
    m_ui->PSKO_listboxOutput->clear();
    for (int output = 0; output < PSKO_NumberOfOutput; ++output) {
        m_ui->PSKO_listboxOutput->addItem(outputLine(static_cast<std::size_t>(output)));
    }
    // The list is as wide as its lines, however narrow the box.
    QAbstractItemView *list = m_ui->PSKO_listboxOutput->view();
    list->setMinimumWidth(list->sizeHintForColumn(0));
}

QString AdvancedSettingDialogViewController::outputLine(std::size_t output) const
{
    const QString modifiers = QStringLiteral("テスト用modifier名");
    const auto &keys = PSKO_KeyData.at(output);
    QString line = QStringLiteral("[%1] + [%2]").arg(modifiers, GetKeyName(keys[1]));
    const auto last = static_cast<std::size_t>(PSKO_NumberOfKeys.at(output));
    for (std::size_t key = 2; key <= last; ++key) {
        line += QStringLiteral(" + [%1]").arg(GetKeyName(keys.at(key)));
    }
    return line;
}

NumericUpDown AdvancedSettingDialogViewController::onTime_PSKO() const
{
    return {m_ui->PSKO_numericupdownOnTime_textbox, m_ui->PSKO_numericupdownOnTime_stepper};
}

NumericUpDown AdvancedSettingDialogViewController::timeBetween_PSKO() const
{
    return {m_ui->PSKO_numericupdownTimeBetween_textbox,
            m_ui->PSKO_numericupdownTimeBetween_stepper};
}

NumericUpDown AdvancedSettingDialogViewController::repeats_PSKO() const
{
    return {m_ui->PSKO_numericupdownNumberOfRepeats_textbox,
            m_ui->PSKO_numericupdownNumberOfRepeats_stepper};
}

void AdvancedSettingDialogViewController::setRepeatsEnabled_PSKO(bool enabled)
{
    turnOn(enabled ? m_ui->PSKO_radiobuttonSetNumber : m_ui->PSKO_radiobuttonUntilRelease);
    repeats_PSKO().setEnabled(enabled);
    m_ui->PSKO_radiobuttonOutput->setEnabled(enabled);
    m_ui->PSKO_radiobuttonSeries->setEnabled(enabled);
}

void AdvancedSettingDialogViewController::PSKO_radiobuttonOutput_CheckedChanged()
{
    turnOn(m_ui->PSKO_radiobuttonOutput);
}

void AdvancedSettingDialogViewController::PSKO_radiobuttonSeries_CheckedChanged()
{
    turnOn(m_ui->PSKO_radiobuttonSeries);
}

} // namespace kavelo
