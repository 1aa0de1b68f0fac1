#include "Stepper.h"

#include <QLineEdit>
#include <QStyleOptionSpinBox>

namespace kavelo {

Stepper::Stepper(QWidget *parent)
    : QSpinBox(parent)
{
    lineEdit()->hide();
    lineEdit()->setReadOnly(true); // keys would still reach it
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Stepper::sizeHint() const
{
    const QSize full = QSpinBox::sizeHint();
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    option.rect = QRect(QPoint(), full);
    const QRect text =
        style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxEditField, this);
    return {full.width() - text.width(), full.height()};
}

} // namespace kavelo
