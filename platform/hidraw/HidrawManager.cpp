#include "HidrawManager.h"

#include "ReportDescriptor.h"

#include <QByteArray>
#include <QFile>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace kavelo::hid {
namespace {

constexpr const char *Subsystem = "hidraw";

/// This socket exists while udev runs. Without udev, libudev still creates a monitor, but the
/// monitor never receives an event.
constexpr const char *UdevSocket = "/run/udev/control";

constexpr std::chrono::milliseconds RetryPeriod{500};

/// Greatest size of a report descriptor that the kernel accepts, in bytes.
constexpr qint64 MaximumDescriptorSize = 4096;

struct HidId
{
    std::uint32_t vendorId = 0;
    std::uint32_t productId = 0;
};

/// Reads the kernel's HID_ID: bus, vendor and product in hex, separated by colons.
std::optional<HidId> parseHidId(const char *text)
{
    const QList<QByteArray> fields = QByteArray(text).split(':');
    if (fields.size() != 3) {
        return std::nullopt;
    }
    bool vendorOk = false;
    bool productOk = false;
    const HidId id{fields[1].toUInt(&vendorOk, 16), fields[2].toUInt(&productOk, 16)};
    return vendorOk && productOk ? std::optional(id) : std::nullopt;
}

/// The bytes of the report descriptor; empty when it cannot be read. It is read from its file,
/// because libudev cuts an attribute at its first zero byte.
QByteArray readDescriptor(udev_device *hidDevice)
{
    QFile file(QFile::decodeName(udev_device_get_syspath(hidDevice)) +
               QStringLiteral("/report_descriptor"));
    return file.open(QIODevice::ReadOnly) ? file.read(MaximumDescriptorSize) : QByteArray();
}

std::string reasonOf(int error)
{
    return std::generic_category().message(error);
}

} // namespace

HidrawManager::HidrawManager()
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(RetryPeriod);
    connect(&m_retry, &QTimer::timeout, this, &HidrawManager::rescan);
}

HidrawManager::~HidrawManager()
{
    for (const Ref &device : devices()) {
        device->retire();
    }
}

void HidrawManager::setDeviceMatching(const Matching &matching)
{
    m_matching = matching;
}

bool HidrawManager::open()
{
    if (m_udev) {
        return true;
    }
    m_udev.reset(udev_new());
    return m_udev && rescan();
}

/// Updates the set of devices without events.
bool HidrawManager::rescan()
{
    const std::vector<Ref> known = devices();
    for (const Ref &device : known) {
        // A refused device whose node can be opened now is announced as a new one.
        if (!device->isPresent() || (device->isRefused() && device->tryNode())) {
            letGo(device);
        } else if (device->isRefused()) {
            m_retry.start();
        }
    }
    // The monitor starts before the enumeration, so that no arrival is missed. A device found by
    // both is added only once.
    if (!m_monitor && ::access(UdevSocket, F_OK) != 0) {
        complain("cannot listen to udev", "it does not run");
    } else if (!m_monitor && !startMonitor()) {
        complain("cannot listen to udev", reasonOf(errno));
    }
    const bool isComplete = enumerate();
    if (!isComplete) {
        complain("cannot list the devices", reasonOf(errno));
    }
    return m_monitor && isComplete;
}

bool HidrawManager::startMonitor()
{
    // "udev" selects the events that udev sends after it has set the permissions of the node. The
    // kernel sends its own events earlier.
    UdevMonitor monitor(udev_monitor_new_from_netlink(m_udev.get(), "udev"));
    if (!monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), Subsystem, nullptr) < 0 ||
        udev_monitor_enable_receiving(monitor.get()) < 0) {
        return false;
    }
    m_monitor = std::move(monitor);
    m_monitorNotifier = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(m_monitor.get()),
                                                          QSocketNotifier::Read);
    connect(m_monitorNotifier.get(), &QSocketNotifier::activated, this,
            &HidrawManager::receiveEvents);
    return true;
}

bool HidrawManager::enumerate()
{
    const UdevEnumerate found(udev_enumerate_new(m_udev.get()));
    if (!found || udev_enumerate_add_match_subsystem(found.get(), Subsystem) < 0 ||
        udev_enumerate_scan_devices(found.get()) < 0) {
        return false;
    }
    for (udev_list_entry *entry = udev_enumerate_get_list_entry(found.get()); entry;
         entry = udev_list_entry_get_next(entry)) {
        const UdevDevice node(
            udev_device_new_from_syspath(m_udev.get(), udev_list_entry_get_name(entry)));
        if (node) {
            addNode(node.get());
        }
    }
    return true;
}

void HidrawManager::receiveEvents()
{
    while (const UdevDevice event{udev_monitor_receive_device(m_monitor.get())}) {
        takeEvent(event.get());
    }
    switch (errno) {
    case EAGAIN:
    case EINTR:
    case EINVAL: // an invalid message; it has been removed from the queue
        break;
    default: // events were lost, or the socket stays readable and would keep the event loop busy
        complain("cannot listen to udev", reasonOf(errno));
        m_monitorNotifier.reset();
        m_monitor.reset();
    }
}

void HidrawManager::takeEvent(udev_device *event)
{
    const char *action = udev_device_get_action(event);
    const char *syspath = udev_device_get_syspath(event);
    if (!action || !syspath) {
        return;
    }
    // Only "add" adds a device. After a read error has removed a device, other events about its
    // node must not add it again.
    if (action == std::string_view("add")) {
        addNode(event);
    } else if (action == std::string_view("remove")) {
        letGo(find(syspath));
    }
}

bool HidrawManager::matches(udev_device *node) const
{
    udev_device *hidDevice = udev_device_get_parent_with_subsystem_devtype(node, "hid", nullptr);
    if (!hidDevice) {
        return false;
    }
    const auto id = parseHidId(udev_device_get_property_value(hidDevice, "HID_ID"));
    if (!id || id->vendorId != m_matching.vendorId || id->productId != m_matching.productId) {
        return false;
    }
    const QByteArray descriptor = readDescriptor(hidDevice);
    const std::vector<std::uint8_t> bytes(descriptor.begin(), descriptor.end());
    return std::ranges::count(applicationUsagePages(bytes), m_matching.usagePage) > 0;
}

HidrawManager::Ref HidrawManager::find(std::string_view syspath) const
{
    const auto found = std::ranges::find(devices(), syspath, &HidrawDevice::syspath);
    return found == devices().end() ? nullptr : *found;
}

void HidrawManager::addNode(udev_device *node)
{
    const char *file = udev_device_get_devnode(node);
    const std::string syspath = udev_device_get_syspath(node);
    if (!file || find(syspath) || !matches(node)) {
        return;
    }
    const auto device = std::make_shared<HidrawDevice>(syspath, file);
    connect(device.get(), &HidrawDevice::gone, this, [this, syspath] { letGo(find(syspath)); });
    connect(device.get(), &HidrawDevice::refused, this, [this] { m_retry.start(); });
    add(device);
}

/// Does nothing when `device` is null.
void HidrawManager::letGo(const Ref &device)
{
    if (device) {
        device->retire();
        remove(device);
    }
}

/// Reports the first problem with udev on standard error, and starts the timer that tries again.
void HidrawManager::complain(const char *what, const std::string &reason)
{
    if (!std::exchange(m_complained, true)) {
        std::fprintf(stderr, "kavelo: %s: %s\n", what, reason.c_str());
    }
    m_retry.start();
}

std::unique_ptr<Manager> createManager()
{
    return std::make_unique<HidrawManager>();
}

} // namespace kavelo::hid
