#pragma once

#include "Alert.h"
#include "KeyUsage.h"
#include "PedalSettingDialog.h"

#include <QTimer>

#include <array>
#include <memory>

class QCheckBox;
class QRadioButton;

namespace kavelo {

namespace Ui {
class SettingDialogViewController;
}

/// The Standard dialog is being closed by its own timer because its unit has gone. Used by
/// UpdateAppWindow2() only, so that it does not run again inside itself.
inline bool timer2state = false;

/// The Standard dialog. It sets one pedal to a key with or without the left-hand modifiers, to
/// modifiers alone, or to a click or double click. When it cannot show the current setting of the
/// pedal, it asks the user before it opens. It closes itself when its unit goes.
class SettingDialogViewController : public PedalSettingDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SettingDialogViewController)

public:
    SettingDialogViewController(DialogPresenter &presenter, QWidget &mainWindow);
    ~SettingDialogViewController() override;

    /// Dismisses the dialog; nothing is written.
    void cancelButtonPressed();
    /// Sends the record, if one has been built, and dismisses the dialog.
    void okButtonPressed();
    void okButtonPressed_keyboard(); ///< given: no control calls it

private:
    void viewDidLoad() override;
    void appear() override;
    void viewWillDisappear() override;
    void buildRecord() override;
    void UpdateAppWindow2();

    void connectActions();
    void setFixedTexts();
    void fillKeyList();
    void loadKeyboardSetting();
    void loadModifiers(std::uint8_t modifiers, std::uint8_t usage);
    void loadMouseSetting();
    void takeAnswer(Answer answer);

    void radiobuttonNoModifiersClicked() { modifierChoiceChanged(); }
    void radiobuttonWithModifiersClicked() { modifierChoiceChanged(); }
    void radiobuttonOnlyModifiersClicked() { modifierChoiceChanged(); }
    void checkboxCtrl_clicked() { Change_K_buttonProgramKavelo_Enabled(); }
    void checkboxShift_clicked() { Change_K_buttonProgramKavelo_Enabled(); }
    void checkboxAlt_clicked() { Change_K_buttonProgramKavelo_Enabled(); }
    void checkboxWindowsKey_clicked() { Change_K_buttonProgramKavelo_Enabled(); }
    void listboxKeys_SelectedIndexChanged();
    void listboxKeys_SelectedIndexChanged_manual();
    void radiobuttonLeftClickClicked() { mouseActionChosen(); }
    void radiobuttonRightClickClicked() { mouseActionChosen(); }
    void radiobuttonCenterClickClicked() { mouseActionChosen(); }
    void radiobuttonDoubleClickClicked() { mouseActionChosen(); }
    void tabView_didSelect() { Change_buttonProgramKavelo_Enabled(); }
    void buttonProgramKavelo_Click() { requestWrite(); }

    void modifierChoiceChanged();
    void mouseActionChosen();
    void Change_K_Controls_Enabled();
    void Change_K_buttonProgramKavelo_Enabled();
    void Change_buttonProgramKavelo_Enabled();

    [[nodiscard]] std::uint8_t chosenModifiers() const;
    void buildKeyRecord();
    void buildMouseRecord();

    std::unique_ptr<Ui::SettingDialogViewController> m_ui;

    /// Whether the choice on the Keyboard tab, and on the Mouse tab, is complete.
    bool K_buttonProgramKavelo_Enabled = false;
    bool M_buttonProgramKavelo_Enabled = false;
    /// Whether this dialog can show the setting of the pedal exactly.
    bool WithinStandard = false;
    /// Usage ID of each row of the key list.
    std::array<int, Max_UsageID> IndexToUsageID{};
    /// Calls UpdateAppWindow2(), which closes the dialog when its unit has gone.
    QTimer timer2{this};

    /// The check boxes of the modifiers, in the order of bits 0 to 3 of the modifier byte.
    std::array<QCheckBox *, 4> m_modifierBoxes{};
};

} // namespace kavelo
