#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// The interface between the device link and the operating system's HID support.
///
/// A callback is a plain function with a context. It is called on the main thread from the event
/// loop. It is never called from inside the call that registered it or that caused the event.
namespace kavelo::hid {

/// Size of one report in bytes, in either direction. The unit's reports are not numbered: byte 0 is
/// payload, and the size includes no report ID.
constexpr std::size_t ReportSize = 16;
using Report = std::array<std::uint8_t, ReportSize>;

/// The devices that a manager looks for. A device matches when any top-level application collection
/// of its report descriptor has this usage page.
struct Matching
{
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::uint16_t usagePage = 0;

    bool operator==(const Matching &) const = default;
};

/// One HID device from its arrival to its removal. Equal references mean the same device. A unit
/// that is plugged in again is a new device.
class Device
{
public:
    /// Called when the bytes of a report have been written into the registered buffer. `report` is
    /// the part of the buffer that was filled: 16 bytes, or fewer for a short report.
    using InputReportCallback = void (*)(void *context, std::span<const std::uint8_t> report);

    Device() = default;
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;
    virtual ~Device() = default;

    /// From now on every input report is written into `buffer`, and then `callback` is called. A
    /// short report leaves the remaining bytes of the buffer unchanged; only the first 16 bytes of
    /// a long report are kept. With a null `callback`, reports are no longer written into the
    /// buffer. `buffer` must stay valid until then.
    virtual void registerInputReportCallback(std::span<std::uint8_t, ReportSize> buffer,
                                             InputReportCallback callback, void *context) = 0;

    /// Sends one output report with report ID 0. Returns whether it was sent. Never waits for a
    /// reply.
    ///
    /// False also means that the device has gone, that the program may not open it, or that another
    /// program uses it. When one of the last two conditions ends, the manager announces the removal
    /// of this device and the arrival of a new one.
    [[nodiscard]] virtual bool setReport(std::span<const std::uint8_t, ReportSize> report) = 0;
};

using DeviceRef = std::shared_ptr<Device>;

/// Finds devices and follows their arrival and removal.
class Manager
{
public:
    using DeviceCallback = void (*)(void *context, const DeviceRef &device);

    Manager() = default;
    Manager(const Manager &) = delete;
    Manager &operator=(const Manager &) = delete;
    virtual ~Manager() = default;

    /// Sets which devices to look for. Called once, before open().
    virtual void setDeviceMatching(const Matching &matching) = 0;

    /// Starts looking for devices. Returns false when the system's list of devices cannot be read,
    /// or its changes cannot be followed. The manager then reports this on standard error and tries
    /// again.
    virtual bool open() = 0;

    /// The matching devices that are present, in the order in which they were found. The same
    /// device always has the same reference.
    [[nodiscard]] virtual std::vector<DeviceRef> copyDevices() = 0;

    /// Registers the only arrival callback; null unregisters it. Devices that are already present
    /// are also announced to it, later and from the event loop. So a unit that arrives before the
    /// registration is not missed.
    virtual void registerDeviceMatchingCallback(DeviceCallback callback, void *context) = 0;

    /// Registers the only removal callback; null unregisters it. It is called once for each removed
    /// device, which copyDevices() then no longer contains.
    virtual void registerDeviceRemovalCallback(DeviceCallback callback, void *context) = 0;
};

/// Creates the program's HID manager. The implementation is chosen at link time: `kavelo` links the
/// one for hidraw, `kavelo-demo` the simulated one.
[[nodiscard]] std::unique_ptr<Manager> createManager();

} // namespace kavelo::hid
