#pragma once

#include "Hid.h"
#include "SimulatedBus.h"

#include <QObject>

#include <memory>
#include <vector>

namespace kavelo {

class SimulatedDevice;

/// A HID manager that finds the units on the simulated bus.
class SimulatedHidManager : public hid::Manager, private bus::Listener
{
public:
    SimulatedHidManager();
    SimulatedHidManager(const SimulatedHidManager &) = delete;
    SimulatedHidManager &operator=(const SimulatedHidManager &) = delete;
    ~SimulatedHidManager() override;

    void setDeviceMatching(const hid::Matching &matching) override;
    bool open() override;
    [[nodiscard]] std::vector<hid::DeviceRef> copyDevices() override;
    void registerDeviceMatchingCallback(DeviceCallback callback, void *context) override;
    void registerDeviceRemovalCallback(DeviceCallback callback, void *context) override;

private:
    using SimulatedDeviceRef = std::shared_ptr<SimulatedDevice>;

    struct Registration
    {
        DeviceCallback callback = nullptr;
        void *context = nullptr;
    };

    void pluggedIn(const bus::AttachmentRef &attachment) override;
    void unplugged(const bus::AttachmentRef &attachment) override;
    void takeIn(const bus::AttachmentRef &attachment);
    void postArrival(const SimulatedDeviceRef &device);

    hid::Matching m_matching;
    bool m_isOpen = false;
    std::vector<SimulatedDeviceRef> m_devices;
    Registration m_arrival;
    int m_arrivalRegistrations = 0; ///< tells announcements of an earlier registration
    Registration m_removal;
    QObject m_mailbox; ///< receives what is posted to the loop; takes it along when it goes
};

} // namespace kavelo
