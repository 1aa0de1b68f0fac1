#pragma once

#include "UhidDevice.h"

#include <QObject>

namespace kavelo {

class SimulatedUnit;

/// A simulated unit that can be plugged into this computer's kernel. Its name says that it is no
/// hardware. The unit must outlive this; when it loses its power, it is unplugged.
class UhidUnit : public QObject
{
    Q_OBJECT

public:
    explicit UhidUnit(SimulatedUnit &unit);

    /// Gives the unit power and plugs it in; nothing if it is plugged in. Returns 0 or an errno, as
    /// UhidDevice::plugIn() does.
    [[nodiscard]] int plugIn();

private:
    void receive(const QByteArray &report);

    SimulatedUnit &m_unit;
    UhidDevice m_device;
};

} // namespace kavelo
