#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// What the device link asks of the operating system's HID support.
///
/// Every callback is a plain function with a context. It is called on the main thread, from the
/// event loop, never from inside the call that registered it or that caused the event.
namespace kavelo::hid {

/// Bytes of one report, in either direction. The unit's reports are not numbered: byte 0 is
/// payload, and no report ID byte is counted here.
constexpr std::size_t ReportSize = 16;
using Report = std::array<std::uint8_t, ReportSize>;

/// Which devices a manager looks for. The usage page is that of any top-level application
/// collection of the device's report descriptor.
struct Matching
{
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::uint16_t usagePage = 0;

    bool operator==(const Matching &) const = default;
};

/// One HID device, from its arrival to its removal. Two references are the same device exactly
/// when they are equal; a unit that is plugged in again is a new device.
class Device
{
public:
    /// Called after a report's bytes are in the registered buffer. `report` views that buffer's
    /// bytes that this report filled: 16, or fewer for a short report.
    using InputReportCallback = void (*)(void *context, std::span<const std::uint8_t> report);

    Device() = default;
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;
    virtual ~Device() = default;

    /// From now on every input report is written into `buffer`, which must stay valid until the
    /// callback is switched off, and then announced by `callback`. A short report leaves the
    /// buffer's remaining bytes as they were; of a long one the first 16 bytes are kept. A null
    /// `callback` switches it off: nothing writes to `buffer` any more.
    virtual void registerInputReportCallback(std::span<std::uint8_t, ReportSize> buffer,
                                             InputReportCallback callback, void *context) = 0;

    /// Sends one output report with report ID 0 and returns whether it went out. False also means
    /// a device that is gone, that may not be opened, or that another program uses; once the latter
    /// two are over, the manager announces the removal of this device and the arrival of a new one.
    /// Never waits for a reply.
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

    /// Sets what to look for. Called once, before open().
    virtual void setDeviceMatching(const Matching &matching) = 0;

    /// Starts looking. False when the system's device list can't be had, or not followed; the
    /// manager then says so on standard error and tries again.
    virtual bool open() = 0;

    /// The matching devices that are present now, in the order in which they were found. The same
    /// device yields the same reference every time.
    [[nodiscard]] virtual std::vector<DeviceRef> copyDevices() = 0;

    /// Registers the one arrival callback; a null `callback` switches it off. It is also called,
    /// later through the event loop, for each matching device already present at registration, so
    /// that a unit that came between two looks is not missed.
    virtual void registerDeviceMatchingCallback(DeviceCallback callback, void *context) = 0;

    /// Registers the one removal callback; a null `callback` switches it off. It is called once
    /// for each device that goes; that device is then no longer among copyDevices().
    virtual void registerDeviceRemovalCallback(DeviceCallback callback, void *context) = 0;
};

/// Creates the program's HID manager. Which one it is, is decided at link time: `kavelo` links
/// the hidraw implementation, `kavelo-demo` the simulated one.
[[nodiscard]] std::unique_ptr<Manager> createManager();

} // namespace kavelo::hid
