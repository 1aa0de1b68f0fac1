#pragma once

class QLineEdit;
class QSpinBox;

namespace kavelo {

/// A numeric field: a text field and the stepper beside it. The stepper's limits are the field's.
struct NumericUpDown
{
    QLineEdit *textbox;
    QSpinBox *stepper;

    /// Lets only numbers within the limits be typed.
    void limitText() const;
    /// Shows a number in both, without their actions.
    void show(int number) const;
    /// Takes the number that has been typed over into the stepper.
    void copyTextToStepper() const;
    /// Takes the stepper's number over into the text field.
    void copyStepperToText() const;
    void setEnabled(bool enabled) const;
};

} // namespace kavelo
