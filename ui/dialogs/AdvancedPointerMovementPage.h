#pragma once

#include "AdvancedPage.h"

#include <memory>

namespace kavelo {

class IndexSlider;
class NumericUpDown;

namespace Ui {
class AdvancedPointerMovementPage;
}

/// The page for a movement of the pointer in one of eight directions. It does not show the current
/// setting of the pedal.
class AdvancedPointerMovementPage : public AdvancedPage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedPointerMovementPage)

public:
    explicit AdvancedPointerMovementPage(QWidget *parent = nullptr);
    ~AdvancedPointerMovementPage() override;

    [[nodiscard]] bool canWrite() const override { return true; }
    void write(const PedalRow &pedal) override { okButtonPressed_PM(pedal); }

private:
    /// An index on the logarithmic scale, and the controls that show it.
    struct LogarithmicIndex
    {
        IndexSlider *slider;
        NumericUpDown *number;
        int &index;
    };
    [[nodiscard]] LogarithmicIndex speed();
    [[nodiscard]] LogarithmicIndex acceleration();
    static void takeFromSlider(const LogarithmicIndex &controls);
    static void takeFromStepper(const LogarithmicIndex &controls);
    void chooseDirection(std::size_t direction);
    void setRepeatsEnabled(bool enabled);
    void writeDirection(CommonRecord &record) const;
    void writeAcceleration(CommonRecord &record);
    void writeRepeats(CommonRecord &record);
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
    void PM_radiobuttonUntilRelease_CheckedChanged() { setRepeatsEnabled(false); }
    void PM_radiobutttonSetNumber_CheckedChanged() { setRepeatsEnabled(true); }
    void okButtonPressed_PM(const PedalRow &pedal);

    int PM_SpeedIndex = 0;        ///< dots per second; 0 = not chosen yet
    int PM_AccelerationIndex = 0; ///< 0 = not chosen yet

    const std::unique_ptr<Ui::AdvancedPointerMovementPage> m_ui;
};

} // namespace kavelo
