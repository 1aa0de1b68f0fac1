#pragma once

#include "UhidDevice.h"

#include <QObject>

namespace kavelo {

class SimulatedUnit;

/// Plugs a simulated unit into this computer's kernel. The name of the HID device says that it is
/// simulated. The unit must outlive this object. A unit that loses its power is unplugged.
class UhidUnit : public QObject
{
    Q_OBJECT

public:
    explicit UhidUnit(SimulatedUnit &unit);

    /// Gives the unit power and plugs it in. Does nothing when it is plugged in already. Returns 0
    /// or an errno, as UhidDevice::plugIn() does.
    [[nodiscard]] int plugIn();

private:
    void receive(const QByteArray &report);

    SimulatedUnit &m_unit;
    UhidDevice m_device;
};

} // namespace kavelo
