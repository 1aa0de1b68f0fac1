#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace kavelo {

/// The report descriptor of the unit's settings interface: one application collection of the
/// vendor's page 0xFF00, with an input and an output report of 16 bytes and without report IDs.
// clang-format off
constexpr std::array<std::uint8_t, 25> UnitReportDescriptor{
    0x06, 0x00, 0xFF, 0x09, 0x01, // usage page, usage
    0xA1, 0x01,                   // application collection
    0x15, 0x00, 0x26, 0xFF, 0x00, // values from 0 to 255
    0x75, 0x08, 0x95, 0x10,       // 8 bits, 16 times
    0x09, 0x02, 0x81, 0x02,       // usage, input
    0x09, 0x03, 0x91, 0x02,       // usage, output
    0xC0};                        // end of the collection
// clang-format on

/// What the kernel, and udev with it, is told of a device.
struct UhidIdentity
{
    QByteArray name;     ///< HID_NAME, at most 127 bytes
    QByteArray uniqueId; ///< HID_UNIQ, at most 63 bytes
    std::uint32_t vendorId = 0;
    std::uint32_t productId = 0;
    QByteArray reportDescriptor; ///< at most 4096 bytes
};

/// A HID device of this computer's kernel whose other end is this program: what programs send to
/// its hidraw node comes out here. The kernel shows it as a device on the USB. It goes with this
/// object, and with the process.
class UhidDevice : public QObject
{
    Q_OBJECT

public:
    UhidDevice() = default;

    /// Plugs it in; nothing may be plugged in yet. Returns 0 or the errno of what went wrong:
    /// ENOENT or ENODEV when the kernel's uhid module is not there, EACCES when this user may not
    /// plug in a device. The node is made a moment later.
    [[nodiscard]] int plugIn(const UhidIdentity &identity);

    /// Takes the device away; nothing if none is plugged in. Whoever has its node open can only
    /// close it.
    void unplug();

    [[nodiscard]] bool isPluggedIn() const { return bool(m_file); }

    /// Sends an input report of at most 4096 bytes; false when it did not get out.
    bool sendReport(std::span<const std::uint8_t> report);

Q_SIGNALS:
    /// An output report has come. The byte in front of it is its report ID, 0 for the unit's.
    void reportReceived(const QByteArray &report);

private:
    void receiveEvent();

    FileDescriptor m_file;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace kavelo
