#include "NumericUpDown.h"

#include <QIntValidator>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>

namespace kavelo {

void NumericUpDown::limitText() const
{
    auto *validator = new QIntValidator(stepper->minimum(), stepper->maximum(), textbox);
    QLocale plainDigits = QLocale::c();
    plainDigits.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    validator->setLocale(plainDigits);
    textbox->setValidator(validator);
}

void NumericUpDown::show(int number) const
{
    const QSignalBlocker blocker(stepper);
    textbox->setText(QString::number(number));
    stepper->setValue(number);
}

void NumericUpDown::copyTextToStepper() const
{
    const QSignalBlocker blocker(stepper);
    stepper->setValue(textbox->text().toInt());
}

void NumericUpDown::copyStepperToText() const
{
    textbox->setText(QString::number(stepper->value()));
}

void NumericUpDown::setEnabled(bool enabled) const
{
    textbox->setEnabled(enabled);
    stepper->setEnabled(enabled);
}

} // namespace kavelo
