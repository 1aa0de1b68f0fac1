#pragma once

#include "DeviceSet.h"
#include "Hid.h"
#include "SimulatedBus.h"
#include "SimulatedDevice.h"

#include <QObject>

namespace kavelo {

/// A HID manager that finds the units on the simulated bus.
class SimulatedHidManager : public QObject, public hid::DeviceSet<SimulatedDevice>
{
    Q_OBJECT

public:
    SimulatedHidManager();

    void setDeviceMatching(const hid::Matching &matching) override;
    bool open() override;

private:
    void pluggedIn(const bus::AttachmentRef &attachment);
    void unplugged(const bus::AttachmentRef &attachment);
    void takeIn(const bus::AttachmentRef &attachment);

    hid::Matching m_matching;
    bool m_isOpen = false;
};

} // namespace kavelo
