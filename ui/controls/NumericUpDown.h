#pragma once

#include <QSpinBox>

namespace kavelo {

/// A numeric field with its stepper. Its object name ends in `_stepper`, and that of its line edit
/// in `_textbox`.
///
/// A typed number takes effect when the field loses the focus; a number entered by assistive
/// technology takes effect at once. A whole number in digits of any script is moved to the nearest
/// value within the limits. Any other text restores the previous number, and so does 0 where the
/// least value is greater. Assistive technology cannot change a disabled field.
class NumericUpDown : public QSpinBox
{
    Q_OBJECT
    /// Assistive technology sets this property.
    Q_PROPERTY(int value READ value WRITE choose)
    Q_PROPERTY(bool textReadOnly READ isTextReadOnly WRITE setTextReadOnly)

public:
    explicit NumericUpDown(QWidget *parent = nullptr);

    /// Sets the value, unless the field is disabled.
    void choose(int value);

    /// Whether the number can be changed only with the stepper.
    [[nodiscard]] bool isTextReadOnly() const;
    void setTextReadOnly(bool readOnly);

protected:
    bool event(QEvent *event) override;
    QValidator::State validate(QString &text, int &position) const override;
    [[nodiscard]] int valueFromText(const QString &text) const override;
};

} // namespace kavelo
