#pragma once

#include "AdvancedPage.h"

#include <memory>

namespace kavelo {

namespace Ui {
class AdvancedClickPage;
}

/// The page for a single click, a double click, or a click of several mouse buttons at the same
/// time.
class AdvancedClickPage : public AdvancedPage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedClickPage)

public:
    explicit AdvancedClickPage(QWidget *parent = nullptr);
    ~AdvancedClickPage() override;

    void load(const PedalRow &pedal);
    [[nodiscard]] bool canWrite() const override { return true; }
    void write(const PedalRow &pedal) override { okButtonPressed_C(pedal); }

private:
    void chooseClick(std::size_t choice);
    [[nodiscard]] std::uint8_t simultaneousClicks() const;
    void C_radiobuttonLeftClick_CheckedChanged() { chooseClick(0); }
    void C_radiobuttonRightClick_CheckedChanged() { chooseClick(1); }
    void C_radiobuttonCenterClick_CheckedChanged() { chooseClick(2); }
    void C_radiobuttonLeftDoubleClick_CheckedChanged() { chooseClick(3); }
    void C_radiobuttonRightDoubleClick_CheckedChanged() { chooseClick(4); }
    void C_radiobuttonCenterDoubleClick_CheckedChanged() { chooseClick(5); }
    void C_checkboxPluralButtonSimultaneousClick_CheckedChanged()
    {
        Change_C_control_VisibleEnabled();
    }
    // These actions do nothing: OK reads the states of the check boxes.
    void C_checkboxLeftClick_CheckedChanged() {}
    void C_checkboxRightClick_CheckedChanged() {}
    void C_checkboxCenterClick_CheckedChanged() {}
    void Change_C_control_VisibleEnabled();
    void okButtonPressed_C(const PedalRow &pedal);

    const std::unique_ptr<Ui::AdvancedClickPage> m_ui;
};

} // namespace kavelo
