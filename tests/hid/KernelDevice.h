#pragma once

#include "PluggedDevice.h"
#include "UdevHandles.h"
#include "UhidDevice.h"

#include <poll.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace kavelo::test {

/// A device in this computer's own kernel. The user must have the right to open its node.
class KernelDevice : public PluggedDevice
{
public:
    [[nodiscard]] static bool isAvailable()
    {
        return ::access("/dev/uhid", R_OK | W_OK) == 0 &&
               std::filesystem::exists("/run/udev/control");
    }

    explicit KernelDevice(const DeviceKind &kind)
        : PluggedDevice(kind.firmware)
    {
        QObject::connect(&m_device, &UhidDevice::reportReceived, [this](const QByteArray &report) {
            receive(Bytes(report.begin(), report.end()));
        });
        powerOn();
        const QList<QByteArray> id = QByteArray(kind.hidId).split(':');
        // Events of a device that another process has plugged in may be left.
        while (hid::UdevDevice(udev_monitor_receive_device(monitor()))) {
        }
        EXPECT_EQ(m_device.plugIn({.name = "Kavelo of the tests",
                                   .uniqueId = {},
                                   .vendorId = id[1].toUInt(nullptr, 16),
                                   .productId = id[2].toUInt(nullptr, 16),
                                   .reportDescriptor = QByteArray::fromHex(kind.descriptor)}),
                  0);
        const hid::UdevDevice added = awaitEvent("add");
        m_syspath = udev_device_get_syspath(added.get());
        m_node = udev_device_get_devnode(added.get());
    }
    ~KernelDevice() override
    {
        KernelDevice::cut();
        while (m_syspath != udev_device_get_syspath(awaitEvent("remove").get())) {
        }
    }

    void cut() override
    {
        m_device.unplug();
        powerOff();
    }
    void queueReport(std::span<const std::uint8_t> report) override
    {
        EXPECT_TRUE(m_device.sendReport(report));
    }
    [[nodiscard]] std::string node() const override { return m_node; }

private:
    /// The first monitor of the process. The kernel delivers an event to the monitors from the
    /// newest to the oldest. So when this one has an event, the program's own has it, too.
    static udev_monitor *monitor()
    {
        static const hid::Udev udev(udev_new());
        static const hid::UdevMonitor monitor(udev_monitor_new_from_netlink(udev.get(), "udev"));
        static const bool listens = udev_monitor_filter_add_match_subsystem_devtype(
                                        monitor.get(), "hidraw", nullptr) >= 0 &&
                                    udev_monitor_enable_receiving(monitor.get()) >= 0;
        EXPECT_TRUE(listens);
        return monitor.get();
    }
    /// Waits for udev's next event of this kind. Without one, ends the process after a minute.
    static hid::UdevDevice awaitEvent(std::string_view action)
    {
        for (;;) {
            pollfd readable = {udev_monitor_get_fd(monitor()), POLLIN, 0};
            if (::poll(&readable, 1, 60000) == 0) {
                qFatal("udev knows of no device");
            }
            hid::UdevDevice device(udev_monitor_receive_device(monitor()));
            if (device && udev_device_get_action(device.get()) == action) {
                return device;
            }
        }
    }

    UhidDevice m_device;
    std::string m_node;
    std::string m_syspath;
};

} // namespace kavelo::test
