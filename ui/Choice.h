#pragma once

#include <QAbstractButton>

namespace kavelo {

/// Has a choice's action done when its check box changes, or its radio button is turned on, by
/// whatever means: assistive technology turns buttons without clicking them. The click on a radio
/// button that is on already counts, too.
template <class Receiver>
void connectChoice(QAbstractButton *button, Receiver *receiver, void (Receiver::*action)())
{
    const bool isRadio = button->autoExclusive();
    QObject::connect(button, &QAbstractButton::toggled, receiver, [=](bool on) {
        if (on || !isRadio) {
            (receiver->*action)();
        }
    });
    if (isRadio) {
        QObject::connect(button, &QAbstractButton::clicked, receiver, action);
    }
}

} // namespace kavelo
