#pragma once

#include "KeyUsage.h"
#include "NumericUpDown.h"
#include "PedalSettingDialog.h"

#include <array>
#include <memory>
#include <span>
#include <utility>

class QAbstractButton;
class QRadioButton;
class QSlider;

namespace kavelo {

namespace Ui {
class AdvancedSettingDialogViewController;
}

/// The Advanced dialog: one page for each kind of output that the Standard dialog does not offer.
/// OK writes what the page on top shows; the page of multiple key outputs writes nothing. Each page
/// has a source file of its own.
///
/// Loading puts impossible values of the pedal's record right in the setting arrays. They reach the
/// unit only with a later write.
class AdvancedSettingDialogViewController : public PedalSettingDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedSettingDialogViewController)

public:
    explicit AdvancedSettingDialogViewController(MainWindowViewController &presenter);
    ~AdvancedSettingDialogViewController() override;

    /// Writes the page on top.
    void okButtonPressed();

    // The key vocabulary.
    [[nodiscard]] static QString GetKeyContents(int UsageID)
    {
        return kavelo::GetKeyContents(UsageID);
    }
    [[nodiscard]] static QString GetKeyName(int UsageID) { return kavelo::GetKeyName(UsageID); }
    [[nodiscard]] static QString GetKeyExplanation(int UsageID)
    {
        return kavelo::GetKeyExplanation(UsageID);
    }
    [[nodiscard]] static int IndexOf(const QString &SearchFor, const QString &Keyword)
    {
        return kavelo::IndexOf(SearchFor, Keyword);
    }

private:
    using Self = AdvancedSettingDialogViewController;
    using Form = Ui::AdvancedSettingDialogViewController;
    using Action = void (Self::*)();
    using ButtonActions = std::span<const std::pair<QAbstractButton *, Action>>;

    void viewDidLoad() override;
    void connectActions(ButtonActions actions);
    void pageChanged();
    [[nodiscard]] Action okActionOfPage() const;
    static void turnOn(QRadioButton *button);

    // Click page
    void connectClickPage();
    void loadClickPage();
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
    // OK reads the boxes' own states.
    void C_checkboxLeftClick_CheckedChanged() {}
    void C_checkboxRightClick_CheckedChanged() {}
    void C_checkboxCenterClick_CheckedChanged() {}
    void Change_C_control_VisibleEnabled();
    void okButtonPressed_C();

    // Key output page
    void connectKeyOutputPage();
    [[nodiscard]] std::uint8_t chosenModifiers() const;
    void okButtonPressed_KO();
    void KO_checkboxLeftCtrl_clicked() { invert(KO_checkboxLeftCtrl_isChecked); }
    void KO_checkboxLeftShift_clicked() { invert(KO_checkboxLeftShift_isChecked); }
    void KO_checkboxLeftAlt_clicked() { invert(KO_checkboxLeftAlt_isChecked); }
    void KO_checkboxLeftWindowsKey_clicked() { invert(KO_checkboxLeftWindowsKey_isChecked); }
    void KO_checkboxRightCtrl_clicked() { invert(KO_checkboxRightCtrl_isChecked); }
    void KO_checkboxRightShift_clicked() { invert(KO_checkboxRightShift_isChecked); }
    void KO_checkboxRightAlt_clicked() { invert(KO_checkboxRightAlt_isChecked); }
    void KO_checkboxRightWindowsKey_clicked() { invert(KO_checkboxRightWindowsKey_isChecked); }
    static void invert(bool &flag) { flag = !flag; }

    // Pointer movement page

    /// An index on the logarithmic scale and the controls that show it.
    struct LogarithmicIndex
    {
        QSlider *slider;
        NumericUpDown number;
        int &index;
    };
    [[nodiscard]] LogarithmicIndex speed();
    [[nodiscard]] LogarithmicIndex acceleration();
    static void takeFromSlider(const LogarithmicIndex &controls);
    static void takeFromStepper(const LogarithmicIndex &controls);
    [[nodiscard]] NumericUpDown repeats_PM() const;
    void connectPointerMovementPage();
    void chooseDirection(std::size_t direction);
    void setRepeatsEnabled_PM(bool enabled);
    void writeDirection();
    void writeAcceleration();
    void writeRepeats();
    void PM_radiobuttonUp_CheckedChanged() { chooseDirection(0); }
    void PM_radiobuttonUpperRight_CheckedChanged() { chooseDirection(1); }
    void PM_radiobuttonRight_CheckedChanged() { chooseDirection(2); }
    void PM_radiobuttonLowerRight_CheckedChanged() { chooseDirection(3); }
    void PM_radiobuttonDown_CheckedChanged() { chooseDirection(4); }
    void PM_radiobuttonLowerLeft_CheckedChanged() { chooseDirection(5); }
    void PM_radiobuttonLeft_CheckedChanged() { chooseDirection(6); }
    void PM_radiobuttonUpperLeft_CheckedChanged() { chooseDirection(7); }
    void PM_hscrollbarThousandLogSpeedIndex_Scroll() { takeFromSlider(speed()); }
    void PM_hscrollbarThousandLogAccelerationIndex_Scroll() { takeFromSlider(acceleration()); }
    void PM_numericupdownSpeedIndex_stepper_ValueChanged() { takeFromStepper(speed()); }
    void PM_numericupdownAccelerationIndex_stepper_ValueChanged()
    {
        takeFromStepper(acceleration());
    }
    void PM_checkboxAccelerated_CheckedChanged();
    void PM_radiobuttonUntilRelease_CheckedChanged() { setRepeatsEnabled_PM(false); }
    void PM_radiobutttonSetNumber_CheckedChanged() { setRepeatsEnabled_PM(true); }
    void PM_numericupdownNumberOfRepeats_textbox_ValueChanged()
    {
        repeats_PM().copyTextToStepper();
    }
    void PM_numericupdownNumberOfRepeats_stepper_ValueChanged()
    {
        repeats_PM().copyStepperToText();
    }
    void okButtonPressed_PM();

    // Multiple key output page
    void connectMultipleKeyOutputPage();
    void resetMultipleKeyOutput();
    void loadMultipleKeyOutputPage();
    void decodeTimes();
    void decodeRepeats();
    void decodeOutputs();
    void showSampleOutputs();
    [[nodiscard]] NumericUpDown onTime_PSKO() const;
    [[nodiscard]] NumericUpDown timeBetween_PSKO() const;
    [[nodiscard]] NumericUpDown repeats_PSKO() const;
    void setRepeatsEnabled_PSKO(bool enabled);
    [[nodiscard]] QString outputLine(std::size_t output) const;
    void PSKO_radiobuttonUntilRelease_CheckedChanged() { setRepeatsEnabled_PSKO(false); }
    void PSKO_radiobuttonSetNumber_CheckedChanged() { setRepeatsEnabled_PSKO(true); }
    void PSKO_radiobuttonOutput_CheckedChanged();
    void PSKO_radiobuttonSeries_CheckedChanged();
    void PSKO_numericupdownNumberOfRepeats_textbox_ValueChanged()
    {
        repeats_PSKO().copyTextToStepper();
    }
    void PSKO_numericupdownNumberOfRepeats_stepper_ValueChanged()
    {
        repeats_PSKO().copyStepperToText();
    }
    void PSKO_listboxOutput_SelectedIndexChanged() {}
    void PSKO_SetControls();

    /// What a new key of an output would be; the sample outputs show it.
    std::uint8_t PSKO_NewOutputCharacter = 0;
    int PSKO_NumberOfOutput = 0; ///< outputs in use, 1 to 10 once loaded
    int PSKO_SelectedOutput = 0;
    bool PSKO_Changing = false; ///< the program is changing the page's lists
    /// Of every output the modifier byte and the usage IDs of its keys 1 to 6; 0 = no key.
    std::array<std::array<std::uint8_t, PskoOutputSize>, NUMBER_OF_PSKO_OUTPUT> PSKO_KeyData{};
    /// Of every output the place of its last key in its row, at least 1 once loaded.
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NumberOfKeys{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NumberOfKeysOriginal{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_SelectedKey{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NewKeyNumber{};

    // The modifiers chosen on the Key output page.
    bool KO_checkboxLeftCtrl_isChecked = false;
    bool KO_checkboxLeftShift_isChecked = false;
    bool KO_checkboxLeftAlt_isChecked = false;
    bool KO_checkboxLeftWindowsKey_isChecked = false;
    bool KO_checkboxRightCtrl_isChecked = false;
    bool KO_checkboxRightShift_isChecked = false;
    bool KO_checkboxRightAlt_isChecked = false;
    bool KO_checkboxRightWindowsKey_isChecked = false;

    int PM_SpeedIndex = 0;        ///< dots per second; 0 until it is chosen
    int PM_AccelerationIndex = 0; ///< 0 until it is chosen

    std::unique_ptr<Form> m_ui;
};

} // namespace kavelo
