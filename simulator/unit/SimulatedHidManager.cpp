#include "SimulatedHidManager.h"

#include "SimulatedUnit.h"

#include <algorithm>

namespace kavelo {

SimulatedHidManager::SimulatedHidManager()
{
    connect(&bus::events(), &bus::Events::pluggedIn, this, &SimulatedHidManager::pluggedIn);
    connect(&bus::events(), &bus::Events::unplugged, this, &SimulatedHidManager::unplugged);
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

void SimulatedHidManager::pluggedIn(const bus::AttachmentRef &attachment)
{
    if (m_isOpen) {
        takeIn(attachment);
    }
}

void SimulatedHidManager::takeIn(const bus::AttachmentRef &attachment)
{
    if (SimulatedUnit::matching() == m_matching) {
        add(std::make_shared<SimulatedDevice>(attachment));
    }
}

void SimulatedHidManager::unplugged(const bus::AttachmentRef &attachment)
{
    const auto gone = std::ranges::find(devices(), attachment, &SimulatedDevice::attachment);
    if (gone != devices().end()) {
        remove(*gone);
    }
}

std::unique_ptr<hid::Manager> hid::createManager()
{
    return std::make_unique<SimulatedHidManager>();
}

} // namespace kavelo
