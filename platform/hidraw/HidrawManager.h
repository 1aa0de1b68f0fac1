#pragma once

#include "Hid.h"
#include "HidrawDevice.h"
#include "UdevHandles.h"

#include <QObject>
#include <QSocketNotifier>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace kavelo::hid {

/// Finds the matching hidraw nodes with udev and follows their arrival and removal.
class HidrawManager : public QObject, public Manager
{
    Q_OBJECT

public:
    HidrawManager() = default;
    HidrawManager(const HidrawManager &) = delete;
    HidrawManager &operator=(const HidrawManager &) = delete;
    /// Devices that are still referred to are at their end: sending to them fails.
    ~HidrawManager() override;

    void setDeviceMatching(const Matching &matching) override;
    bool open() override;
    [[nodiscard]] std::vector<DeviceRef> copyDevices() override;
    void registerDeviceMatchingCallback(DeviceCallback callback, void *context) override;
    void registerDeviceRemovalCallback(DeviceCallback callback, void *context) override;

private:
    using HidrawDeviceRef = std::shared_ptr<HidrawDevice>;

    struct Registration
    {
        DeviceCallback callback = nullptr;
        void *context = nullptr;
    };

    bool startMonitor();
    bool enumerate();
    void receiveEvents();
    void takeEvent(udev_device *event);
    [[nodiscard]] bool matches(udev_device *node) const;
    [[nodiscard]] bool isPresent(const DeviceRef &device) const;
    [[nodiscard]] std::vector<HidrawDeviceRef>::const_iterator find(std::string_view syspath) const;
    void add(udev_device *node);
    void remove(std::string_view syspath);
    void queueArrival(const DeviceRef &device);
    void queueRemoval(const DeviceRef &device);

    Matching m_matching;
    Udev m_udev;
    UdevMonitor m_monitor;
    std::unique_ptr<QSocketNotifier> m_monitorNotifier;
    std::vector<HidrawDeviceRef> m_devices;
    Registration m_arrival;
    Registration m_removal;
    /// Counts the registrations of an arrival callback: what was queued for an earlier one is not
    /// delivered, as the later one has every present device queued anew.
    std::uint64_t m_arrivalRegistrations = 0;
};

} // namespace kavelo::hid
