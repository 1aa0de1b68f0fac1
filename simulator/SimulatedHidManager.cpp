#include "SimulatedHidManager.h"

#include "SimulatedDevice.h"
#include "SimulatedUnit.h"

#include <algorithm>

namespace kavelo {

SimulatedHidManager::SimulatedHidManager()
{
    bus::addListener(*this);
}

SimulatedHidManager::~SimulatedHidManager()
{
    bus::removeListener(*this);
}

void SimulatedHidManager::setDeviceMatching(const hid::Matching &matching)
{
    m_matching = matching;
}

bool SimulatedHidManager::open()
{
    if (!m_isOpen) {
        m_isOpen = true;
        std::ranges::for_each(bus::attachments(), [this](const auto &each) { takeIn(each); });
    }
    return true;
}

std::vector<hid::DeviceRef> SimulatedHidManager::copyDevices()
{
    return {m_devices.begin(), m_devices.end()};
}

void SimulatedHidManager::registerDeviceMatchingCallback(DeviceCallback callback, void *context)
{
    m_arrival = {callback, context};
    ++m_arrivalRegistrations;
    std::ranges::for_each(m_devices, [this](const auto &device) { postArrival(device); });
}

void SimulatedHidManager::registerDeviceRemovalCallback(DeviceCallback callback, void *context)
{
    m_removal = {callback, context};
}

void SimulatedHidManager::pluggedIn(const bus::AttachmentRef &attachment)
{
    if (m_isOpen) {
        takeIn(attachment);
    }
}

void SimulatedHidManager::takeIn(const bus::AttachmentRef &attachment)
{
    if (attachment->unit->matching() == m_matching) {
        m_devices.push_back(std::make_shared<SimulatedDevice>(attachment));
        postArrival(m_devices.back());
    }
}

void SimulatedHidManager::postArrival(const SimulatedDeviceRef &device)
{
    if (m_arrival.callback == nullptr) {
        return;
    }
    const auto deliver = [this, device, registration = m_arrivalRegistrations] {
        const bool isPresent = device->attachment()->unit != nullptr;
        if (isPresent && registration == m_arrivalRegistrations) {
            m_arrival.callback(m_arrival.context, device);
        }
    };
    QMetaObject::invokeMethod(&m_mailbox, deliver, Qt::QueuedConnection);
}

void SimulatedHidManager::unplugged(const bus::AttachmentRef &attachment)
{
    const auto gone = std::ranges::find(m_devices, attachment, &SimulatedDevice::attachment);
    if (gone == m_devices.end()) {
        return;
    }
    const auto deliver = [this, device = *gone] {
        if (m_removal.callback != nullptr) {
            m_removal.callback(m_removal.context, device);
        }
    };
    m_devices.erase(gone);
    QMetaObject::invokeMethod(&m_mailbox, deliver, Qt::QueuedConnection);
}

std::unique_ptr<hid::Manager> hid::createManager()
{
    return std::make_unique<SimulatedHidManager>();
}

} // namespace kavelo
