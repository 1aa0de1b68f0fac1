#pragma once

#include <libudev.h>

#include <memory>

namespace kavelo::hid {

/// Releases one reference to a libudev object.
struct UdevUnref
{
    void operator()(udev *handle) const { udev_unref(handle); }
    void operator()(udev_monitor *handle) const { udev_monitor_unref(handle); }
    void operator()(udev_enumerate *handle) const { udev_enumerate_unref(handle); }
    void operator()(udev_device *handle) const { udev_device_unref(handle); }
};

using Udev = std::unique_ptr<udev, UdevUnref>;
using UdevMonitor = std::unique_ptr<udev_monitor, UdevUnref>;
using UdevEnumerate = std::unique_ptr<udev_enumerate, UdevUnref>;
using UdevDevice = std::unique_ptr<udev_device, UdevUnref>;

} // namespace kavelo::hid
