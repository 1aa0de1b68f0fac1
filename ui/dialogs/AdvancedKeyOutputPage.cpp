#include "AdvancedKeyOutputPage.h"

#include "KeyUsage.h"
#include "ModifierName.h"
#include "ui_AdvancedKeyOutputPage.h"

#include <array>
#include <utility>

namespace kavelo {
namespace {

enum ModifierRow { NoModifiers = 0, WithModifiers = 1, OnlyModifiers = 2 };

/// The usage IDs of the key list's rows: "a", "b", "c", "d". When no row is chosen, the last one is
/// written.
constexpr std::array<std::uint8_t, 4> KeyListUsageIDs{4, 5, 6, 7};

std::uint8_t usageOfListRow(int row)
{
    const auto index = static_cast<std::size_t>(row);
    return index < KeyListUsageIDs.size() ? KeyListUsageIDs.at(index) : KeyListUsageIDs.back();
}

} // namespace

AdvancedKeyOutputPage::AdvancedKeyOutputPage(QWidget *parent)
    : AdvancedPage(parent)
    , m_ui(std::make_unique<Ui::AdvancedKeyOutputPage>())
{
    using Self = AdvancedKeyOutputPage;
    m_ui->setupUi(this);
    m_ui->RadioButtonModifiers_KO->setId(m_ui->KO_radiobuttonNoModifiers, NoModifiers);
    m_ui->RadioButtonModifiers_KO->setId(m_ui->KO_radiobuttonWithModifiers, WithModifiers);
    m_ui->RadioButtonModifiers_KO->setId(m_ui->KO_radiobuttonOnlyModifiers, OnlyModifiers);
    for (const std::uint8_t usage : KeyListUsageIDs) {
        m_ui->KO_listboxKeys->addItem(GetKeyName(usage));
    }
    const std::array<std::pair<QCheckBox *, void (Self::*)(bool)>, 8> actions{{
        {m_ui->KO_checkboxLeftCtrl, &Self::KO_checkboxLeftCtrl_clicked},
        {m_ui->KO_checkboxLeftShift, &Self::KO_checkboxLeftShift_clicked},
        {m_ui->KO_checkboxLeftAlt, &Self::KO_checkboxLeftAlt_clicked},
        {m_ui->KO_checkboxLeftWindowsKey, &Self::KO_checkboxLeftWindowsKey_clicked},
        {m_ui->KO_checkboxRightCtrl, &Self::KO_checkboxRightCtrl_clicked},
        {m_ui->KO_checkboxRightShift, &Self::KO_checkboxRightShift_clicked},
        {m_ui->KO_checkboxRightAlt, &Self::KO_checkboxRightAlt_clicked},
        {m_ui->KO_checkboxRightWindowsKey, &Self::KO_checkboxRightWindowsKey_clicked},
    }};
    for (const auto &[box, action] : actions) {
        connect(box, &QCheckBox::toggled, this, action);
    }
}

AdvancedKeyOutputPage::~AdvancedKeyOutputPage() = default;

std::uint8_t AdvancedKeyOutputPage::chosenModifiers() const
{
    const std::array<std::pair<bool, ModifierBit>, 8> modifiers{{
        {KO_checkboxLeftCtrl_isChecked, LeftControl},
        {KO_checkboxLeftShift_isChecked, LeftShift},
        {KO_checkboxLeftAlt_isChecked, LeftOption},
        {KO_checkboxLeftWindowsKey_isChecked, LeftCommand},
        {KO_checkboxRightCtrl_isChecked, RightControl},
        {KO_checkboxRightShift_isChecked, RightShift},
        {KO_checkboxRightAlt_isChecked, RightOption},
        {KO_checkboxRightWindowsKey_isChecked, RightCommand},
    }};
    std::uint8_t chosen = 0;
    for (const auto &[isChecked, bit] : modifiers) {
        if (isChecked) {
            chosen |= bit;
        }
    }
    return chosen;
}

void AdvancedKeyOutputPage::okButtonPressed_KO(const PedalRow &pedal)
{
    // The output mode of the pedal stays unchanged, even when it is not the key output.
    const int row = m_ui->RadioButtonModifiers_KO->checkedId();
    pedal.commonData[0] = row == NoModifiers ? std::uint8_t{0} : chosenModifiers();
    pedal.commonData[1] = row == OnlyModifiers
                              ? std::uint8_t{0}
                              : usageOfListRow(m_ui->KO_listboxKeys->currentIndex());
}

} // namespace kavelo
