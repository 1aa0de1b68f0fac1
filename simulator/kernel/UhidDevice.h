#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <cstdint>
#include <memory>
#include <span>

namespace kavelo {

/// The description of a device for the kernel, which udev reads as well.
struct UhidIdentity
{
    QByteArray name;     ///< HID_NAME, at most 127 bytes
    QByteArray uniqueId; ///< HID_UNIQ, at most 63 bytes
    std::uint32_t vendorId = 0;
    std::uint32_t productId = 0;
    QByteArray reportDescriptor; ///< at most 4096 bytes
};

/// A HID device of this computer's kernel, for which this program plays the hardware. It gets the
/// reports that other programs send to the device's hidraw node. The kernel shows it as a USB
/// device. It is unplugged when this object is destroyed and when the process ends.
class UhidDevice : public QObject
{
    Q_OBJECT

public:
    UhidDevice() = default;

    /// Plugs the device in. It must not be plugged in yet. Returns 0 or an errno: ENOENT or ENODEV
    /// when the kernel's uhid module is not loaded, EACCES when the user may not plug in a device.
    /// The kernel makes the node a moment later.
    [[nodiscard]] int plugIn(const UhidIdentity &identity);

    /// Unplugs the device. Does nothing when it is not plugged in. A program that has its node open
    /// can only close it then.
    void unplug();

    [[nodiscard]] bool isPluggedIn() const { return bool(m_file); }

    /// Sends an input report of at most 4096 bytes; false when that failed.
    bool sendReport(std::span<const std::uint8_t> report);

Q_SIGNALS:
    /// An output report has come. Its first byte is its report ID, which is 0 for the unit.
    void reportReceived(const QByteArray &report);

private:
    void receiveEvent();

    FileDescriptor m_file;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace kavelo
