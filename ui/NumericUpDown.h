#pragma once

class QLineEdit;
class QSpinBox;

namespace kavelo {

/// A numeric field's two controls: a text field and the stepper beside it, which the form places
/// and owns. This is no widget, but what both do together. The stepper's limits are the field's.
struct NumericUpDown
{
    QLineEdit *textbox;
    QSpinBox *stepper;

    /// Lets only digits be typed.
    void limitText() const;
    /// Makes the read-only text field look so and stay so.
    void keepReadOnly() const;
    /// Shows a number in both, without their actions.
    void show(int number) const;
    /// Takes the number that has been entered over into the stepper. One beyond the limits becomes
    /// the nearest within; what is no number is undone.
    void copyTextToStepper() const;
    /// Takes the stepper's number over into the text field.
    void copyStepperToText() const;
    void setEnabled(bool enabled) const;
};

} // namespace kavelo
