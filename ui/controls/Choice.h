#pragma once

#include <QAbstractButton>

namespace kavelo {

/// Connects a check box or a radio button to its action. The action is called when the check box
/// changes, and when the radio button is turned on. It is not connected to clicks alone, because
/// assistive technology toggles buttons without clicking them. A click on a radio button that is
/// already on also calls the action.
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
