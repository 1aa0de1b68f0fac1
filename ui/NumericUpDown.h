#pragma once

#include <QSpinBox>

namespace kavelo {

/// A numeric field with its stepper. It is named `..._stepper`, and its text field `..._textbox`.
///
/// What is entered counts when the field is left, or at once when assistive technology enters it. A
/// whole number in digits of any script becomes the nearest within the limits; anything else, and a
/// 0 where 0 is not allowed, gives way to the number that the field had.
class NumericUpDown : public QSpinBox
{
    Q_OBJECT
    Q_PROPERTY(bool textReadOnly READ isTextReadOnly WRITE setTextReadOnly)

public:
    explicit NumericUpDown(QWidget *parent = nullptr);

    /// Whether only the stepper changes the number.
    [[nodiscard]] bool isTextReadOnly() const;
    void setTextReadOnly(bool readOnly);

protected:
    bool event(QEvent *event) override;
    QValidator::State validate(QString &text, int &position) const override;
    [[nodiscard]] int valueFromText(const QString &text) const override;
};

} // namespace kavelo
