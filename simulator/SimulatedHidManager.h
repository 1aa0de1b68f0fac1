#pragma once

#include "DeviceSet.h"
#include "Hid.h"
#include "SimulatedBus.h"
#include "SimulatedDevice.h"

namespace kavelo {

/// A HID manager that finds the units on the simulated bus.
class SimulatedHidManager : public hid::DeviceSet<SimulatedDevice>, private bus::Listener
{
public:
    SimulatedHidManager();
    SimulatedHidManager(const SimulatedHidManager &) = delete;
    SimulatedHidManager &operator=(const SimulatedHidManager &) = delete;
    ~SimulatedHidManager() override;

    void setDeviceMatching(const hid::Matching &matching) override;
    bool open() override;

private:
    void pluggedIn(const bus::AttachmentRef &attachment) override;
    void unplugged(const bus::AttachmentRef &attachment) override;
    void takeIn(const bus::AttachmentRef &attachment);

    hid::Matching m_matching;
    bool m_isOpen = false;
};

} // namespace kavelo
