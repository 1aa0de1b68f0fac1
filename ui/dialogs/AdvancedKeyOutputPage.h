#pragma once

#include "AdvancedPage.h"

#include <memory>

namespace kavelo {

namespace Ui {
class AdvancedKeyOutputPage;
}

/// The page for a key, with or without modifiers, or modifiers alone. It does not show the current
/// setting of the pedal.
class AdvancedKeyOutputPage : public AdvancedPage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedKeyOutputPage)

public:
    explicit AdvancedKeyOutputPage(QWidget *parent = nullptr);
    ~AdvancedKeyOutputPage() override;

    [[nodiscard]] bool canWrite() const override { return true; }
    void write(const PedalRow &pedal) override { okButtonPressed_KO(pedal); }

private:
    [[nodiscard]] std::uint8_t chosenModifiers() const;
    void okButtonPressed_KO(const PedalRow &pedal);
    void KO_checkboxLeftCtrl_clicked(bool on) { KO_checkboxLeftCtrl_isChecked = on; }
    void KO_checkboxLeftShift_clicked(bool on) { KO_checkboxLeftShift_isChecked = on; }
    void KO_checkboxLeftAlt_clicked(bool on) { KO_checkboxLeftAlt_isChecked = on; }
    void KO_checkboxLeftWindowsKey_clicked(bool on) { KO_checkboxLeftWindowsKey_isChecked = on; }
    void KO_checkboxRightCtrl_clicked(bool on) { KO_checkboxRightCtrl_isChecked = on; }
    void KO_checkboxRightShift_clicked(bool on) { KO_checkboxRightShift_isChecked = on; }
    void KO_checkboxRightAlt_clicked(bool on) { KO_checkboxRightAlt_isChecked = on; }
    void KO_checkboxRightWindowsKey_clicked(bool on) { KO_checkboxRightWindowsKey_isChecked = on; }

    // The states of the check boxes of the modifiers.
    bool KO_checkboxLeftCtrl_isChecked = false;
    bool KO_checkboxLeftShift_isChecked = false;
    bool KO_checkboxLeftAlt_isChecked = false;
    bool KO_checkboxLeftWindowsKey_isChecked = false;
    bool KO_checkboxRightCtrl_isChecked = false;
    bool KO_checkboxRightShift_isChecked = false;
    bool KO_checkboxRightAlt_isChecked = false;
    bool KO_checkboxRightWindowsKey_isChecked = false;

    const std::unique_ptr<Ui::AdvancedKeyOutputPage> m_ui;
};

} // namespace kavelo
