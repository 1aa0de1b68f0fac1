#pragma once

#include "Hid.h"

#include <QMetaObject>
#include <QObject>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace kavelo::hid {

/// The base class of all managers. It keeps the devices that have been found and announces their
/// arrival and removal. Announcements are posted to the event loop. Announcements still pending
/// when the manager is destroyed are dropped.
template <class DeviceType>
class DeviceSet : public Manager
{
public:
    using Ref = std::shared_ptr<DeviceType>;

    [[nodiscard]] std::vector<DeviceRef> copyDevices() override
    {
        return {m_devices.begin(), m_devices.end()};
    }

    void registerDeviceMatchingCallback(DeviceCallback callback, void *context) override
    {
        m_arrival = {callback, context};
        ++m_arrivalRegistrations;
        for (const Ref &device : m_devices) {
            postArrival(device);
        }
    }

    void registerDeviceRemovalCallback(DeviceCallback callback, void *context) override
    {
        m_removal = {callback, context};
    }

protected:
    /// The devices in the order in which they were added.
    [[nodiscard]] const std::vector<Ref> &devices() const { return m_devices; }

    void add(const Ref &device)
    {
        m_devices.push_back(device);
        postArrival(device);
    }

    /// Does nothing when the device is not in the set.
    void remove(const Ref &device)
    {
        const auto position = std::ranges::find(m_devices, device);
        if (position == m_devices.end()) {
            return;
        }
        post([this, gone = *position] {
            // This calls the callback that is registered now, not the one that was registered when
            // the device went. So a client that has changed its callback learns of the removal.
            if (m_removal.callback != nullptr) {
                m_removal.callback(m_removal.context, gone);
            }
        });
        m_devices.erase(position);
    }

private:
    struct Registration
    {
        DeviceCallback callback = nullptr;
        void *context = nullptr;
    };

    void postArrival(const Ref &device)
    {
        if (m_arrival.callback == nullptr) {
            return;
        }
        post([this, device, registration = m_arrivalRegistrations] {
            const bool isPresent = std::ranges::count(m_devices, device) > 0;
            if (isPresent && registration == m_arrivalRegistrations) {
                m_arrival.callback(m_arrival.context, device);
            }
        });
    }

    template <class Delivery>
    void post(Delivery delivery)
    {
        QMetaObject::invokeMethod(&m_mailbox, delivery, Qt::QueuedConnection);
    }

    std::vector<Ref> m_devices;
    Registration m_arrival;
    Registration m_removal;
    /// Number of registrations of an arrival callback. Each registration announces all present
    /// devices again, so pending announcements of an earlier registration are dropped.
    std::uint64_t m_arrivalRegistrations = 0;
    QObject m_mailbox; ///< receives the pending announcements; they are dropped with it
};

} // namespace kavelo::hid
