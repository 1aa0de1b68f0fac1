#include "HidapiManager.h"

#include <hidapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace kavelo::hid {
namespace {

constexpr std::chrono::milliseconds LookPeriod{500};

struct FreeList
{
    void operator()(hid_device_info *list) const { hid_free_enumeration(list); }
};

} // namespace

HidapiManager::HidapiManager()
{
    m_timer.setInterval(LookPeriod);
    connect(&m_timer, &QTimer::timeout, this, &HidapiManager::look);
}

HidapiManager::~HidapiManager()
{
    for (const Ref &device : devices()) {
        device->retire();
    }
    hid_exit();
}

void HidapiManager::setDeviceMatching(const Matching &matching)
{
    m_matching = matching;
}

bool HidapiManager::open()
{
    m_timer.start();
    const bool works = hid_init() == 0;
    if (!works) {
        // Listing the devices initialises the library again.
        std::fprintf(stderr, "kavelo: cannot list the devices: %s\n", libraryError().c_str());
    }
    look();
    return works;
}

/// Updates the set of devices.
void HidapiManager::look()
{
    // The utility uses one device at a time, and the end of an open one comes from its reader. A
    // look beside it would cost much more than all else that the idle utility does.
    if (std::ranges::any_of(devices(), &HidapiDevice::isOpen)) {
        return;
    }
    const std::unique_ptr<hid_device_info, FreeList> list(
        hid_enumerate(m_matching.vendorId, m_matching.productId));
    // The list has an entry for each top-level collection of a device.
    std::vector<std::string> paths;
    for (const hid_device_info *entry = list.get(); entry; entry = entry->next) {
        if (entry->path && entry->usage_page == m_matching.usagePage) {
            paths.emplace_back(entry->path);
        }
    }
    const std::vector<Ref> known = devices();
    for (const Ref &device : known) {
        // A refused device that can be opened now is announced as a new one.
        if (std::ranges::count(paths, device->path()) == 0 ||
            (device->isRefused() && device->tryPath())) {
            letGo(device);
        }
    }
    for (const std::string &path : paths) {
        if (std::ranges::count(devices(), path, &HidapiDevice::path) == 0) {
            addPath(path);
        }
    }
}

void HidapiManager::addPath(const std::string &path)
{
    const auto device = std::make_shared<HidapiDevice>(path);
    connect(device.get(), &HidapiDevice::gone, this, [this, gone = std::weak_ptr(device)] {
        letGo(gone.lock());
        // The system may list the device for another moment.
        m_timer.start();
    });
    add(device);
}

void HidapiManager::letGo(const Ref &device)
{
    device->retire();
    remove(device);
}

std::unique_ptr<Manager> createManager()
{
    return std::make_unique<HidapiManager>();
}

} // namespace kavelo::hid
