#include "AdvancedMultipleKeyOutputPage.h"

#include "Choice.h"
#include "KeyUsage.h"
#include "ModifierName.h"
#include "ui_AdvancedMultipleKeyOutputPage.h"

#include <QAbstractItemView>

#include <utility>

namespace kavelo {
namespace {

constexpr int DEFAULT_NUMBER_OF_REPEATS = 10;
constexpr std::uint8_t DefaultTime = 10; // ms
constexpr std::uint8_t DefaultOutputs = 2;
constexpr std::uint8_t RepeatUnitBit = 0x80;

// The list of keys has only placeholders, "test0" to "test231", and the lines of the outputs have a
// literal in place of the modifiers' names. Both are given.
constexpr int PlaceholderKeys = 232;
const auto PlaceholderModifiers = QStringLiteral("テスト用modifier名");

/// Copies the modifier byte of an output and its keys up to the first usage ID 0. Returns the index
/// of the last key copied. Key 1 is always copied, even when it is 0.
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

AdvancedMultipleKeyOutputPage::AdvancedMultipleKeyOutputPage(QWidget *parent)
    : AdvancedPage(parent)
    , m_ui(std::make_unique<Ui::AdvancedMultipleKeyOutputPage>())
{
    m_ui->setupUi(this);
}

AdvancedMultipleKeyOutputPage::~AdvancedMultipleKeyOutputPage() = default;

void AdvancedMultipleKeyOutputPage::load(const PedalRow &pedal)
{
    reset();
    if (pedal.outputMode == PLURAL_SIMULTANEOUS_KEY_OUTPUT) {
        decodeTimes(pedal.commonData);
        decodeRepeats(pedal.commonData);
        decodeOutputs(pedal);
    } else {
        showSampleOutputs();
    }
    PSKO_SelectedOutput = 0;
    PSKO_SetControls();
    connectActions(); // after loading, which must not trigger the actions
}

void AdvancedMultipleKeyOutputPage::connectActions()
{
    using Self = AdvancedMultipleKeyOutputPage;
    const std::array<std::pair<QAbstractButton *, void (Self::*)()>, 4> actions{{
        {m_ui->PSKO_radiobuttonUntilRelease, &Self::PSKO_radiobuttonUntilRelease_CheckedChanged},
        {m_ui->PSKO_radiobuttonSetNumber, &Self::PSKO_radiobuttonSetNumber_CheckedChanged},
        {m_ui->PSKO_radiobuttonOutput, &Self::PSKO_radiobuttonOutput_CheckedChanged},
        {m_ui->PSKO_radiobuttonSeries, &Self::PSKO_radiobuttonSeries_CheckedChanged},
    }};
    for (const auto &[button, action] : actions) {
        connectChoice(button, this, action);
    }
    connect(m_ui->PSKO_listboxOutput, &QComboBox::activated, this,
            &Self::PSKO_listboxOutput_SelectedIndexChanged);
}

void AdvancedMultipleKeyOutputPage::reset()
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

void AdvancedMultipleKeyOutputPage::decodeTimes(CommonRecord &record)
{
    if (pskoSettingIn(record).onTime == 0) {
        record[0] = DefaultTime;
    }
    if (pskoSettingIn(record).timeBetween == 0) {
        record[1] = DefaultTime;
    }
    const PskoSetting setting = pskoSettingIn(record);
    m_ui->PSKO_numericupdownOnTime_stepper->setValue(setting.onTime);
    m_ui->PSKO_numericupdownTimeBetween_stepper->setValue(setting.timeBetween);
}

void AdvancedMultipleKeyOutputPage::decodeRepeats(const CommonRecord &record)
{
    const PskoSetting setting = pskoSettingIn(record);
    const bool untilRelease = setting.numberOfRepeats == 0;
    const bool repeatsSet = !untilRelease && setting.repeatsSet;
    m_ui->PSKO_radiobuttonUntilRelease->setChecked(untilRelease);
    m_ui->PSKO_radiobuttonSetNumber->setChecked(!untilRelease);
    m_ui->PSKO_numericupdownNumberOfRepeats_stepper->setValue(
        untilRelease ? DEFAULT_NUMBER_OF_REPEATS : setting.numberOfRepeats);
    m_ui->PSKO_radiobuttonSeries->setChecked(repeatsSet);
    m_ui->PSKO_radiobuttonOutput->setChecked(!repeatsSet);
}

void AdvancedMultipleKeyOutputPage::decodeOutputs(const PedalRow &pedal)
{
    PSKO_NumberOfOutput = pskoSettingIn(pedal.commonData).numberOfOutputs;
    if (PSKO_NumberOfOutput == 0 || PSKO_NumberOfOutput > NUMBER_OF_PSKO_OUTPUT) {
        PSKO_NumberOfOutput = DefaultOutputs;
        pedal.commonData[3] =
            static_cast<std::uint8_t>((pedal.commonData[3] & RepeatUnitBit) | DefaultOutputs);
    }
    for (int output = 0; output < PSKO_NumberOfOutput; ++output) {
        const auto row = static_cast<std::size_t>(output);
        const int lastKey = decodeOutput(
            pskoOutputIn(pedal.commonData, pedal.additionalData, output + 1), PSKO_KeyData.at(row));
        PSKO_NumberOfKeys.at(row) = lastKey;
        PSKO_NumberOfKeysOriginal.at(row) = lastKey;
    }
}

void AdvancedMultipleKeyOutputPage::showSampleOutputs()
{
    const auto newCharacter = static_cast<std::uint8_t>(PSKO_NewOutputCharacter + 1);
    PSKO_KeyData[0] = {LeftShift, newCharacter};
    PSKO_KeyData[1] = {0, newCharacter};
    PSKO_KeyData[2] = {0, newCharacter, static_cast<std::uint8_t>(PSKO_NewKeyNumber[2] + 1)};
    PSKO_NumberOfKeys[2] = 2;
    PSKO_NumberOfKeysOriginal[2] = 2;
    PSKO_NumberOfOutput = 3;
    m_ui->PSKO_radiobuttonUntilRelease->setChecked(true);
    m_ui->PSKO_numericupdownNumberOfRepeats_stepper->setValue(DEFAULT_NUMBER_OF_REPEATS);
    m_ui->PSKO_radiobuttonOutput->setChecked(true);
}

void AdvancedMultipleKeyOutputPage::PSKO_SetControls()
{
    PSKO_Changing = true;
    m_ui->PSKO_listboxOutput->clear();
    for (int output = 0; output < PSKO_NumberOfOutput; ++output) {
        m_ui->PSKO_listboxOutput->addItem(outputLine(static_cast<std::size_t>(output)));
    }
    // The list is as wide as its longest line, even when the box is narrower.
    QAbstractItemView *list = m_ui->PSKO_listboxOutput->view();
    list->setMinimumWidth(list->sizeHintForColumn(0));
}

QString AdvancedMultipleKeyOutputPage::outputLine(std::size_t output) const
{
    const auto &keys = PSKO_KeyData.at(output);
    QString line = QStringLiteral("[%1] + [%2]").arg(PlaceholderModifiers, GetKeyName(keys[1]));
    const auto last = static_cast<std::size_t>(PSKO_NumberOfKeys.at(output));
    for (std::size_t key = 2; key <= last; ++key) {
        line += QStringLiteral(" + [%1]").arg(GetKeyName(keys.at(key)));
    }
    return line;
}

void AdvancedMultipleKeyOutputPage::setRepeatsEnabled(bool enabled)
{
    QRadioButton *radio =
        enabled ? m_ui->PSKO_radiobuttonSetNumber : m_ui->PSKO_radiobuttonUntilRelease;
    radio->setChecked(true);
    m_ui->PSKO_numericupdownNumberOfRepeats_stepper->setEnabled(enabled);
    m_ui->PSKO_radiobuttonOutput->setEnabled(enabled);
    m_ui->PSKO_radiobuttonSeries->setEnabled(enabled);
}

void AdvancedMultipleKeyOutputPage::PSKO_radiobuttonOutput_CheckedChanged()
{
    m_ui->PSKO_radiobuttonOutput->setChecked(true);
}

void AdvancedMultipleKeyOutputPage::PSKO_radiobuttonSeries_CheckedChanged()
{
    m_ui->PSKO_radiobuttonSeries->setChecked(true);
}

} // namespace kavelo
