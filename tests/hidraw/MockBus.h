#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kavelo {
class SimulatedUnit;
}

namespace kavelo::test {

using Bytes = std::vector<std::uint8_t>;

/// One collection of usage page 0xFF00.
inline const Bytes UnitDescriptor = {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01, 0xC0};

/// What is plugged in: by default the unit.
struct PluggedDevice
{
    std::uint16_t vendorId = 0x1209;
    std::uint16_t productId = 0x0001;
    Bytes descriptor = UnitDescriptor;
    /// N of /dev/hidrawN; numbers that the machine itself surely does not use.
    int number = 900;
    QString subsystem = QStringLiteral("hidraw");
    SimulatedUnit *firmware = nullptr; ///< takes the node's requests and answers them
};

/// A USB bus with HID devices on it, as the program sees it: sysfs, udev events and hidraw nodes
/// that take and give reports. Works only in a program run under umockdev-wrapper; one at a time.
class MockBus
{
public:
    MockBus();
    MockBus(const MockBus &) = delete;
    MockBus &operator=(const MockBus &) = delete;
    ~MockBus();

    /// Plugs a device in and returns its node. udev's event is out when this returns.
    std::string plug(const PluggedDevice &options = {});

    /// Takes a device away. After cut() its node is dead, but udev has not said so yet.
    void unplug(const std::string &node);
    void cut(const std::string &node);

    /// Sends any other udev event about the node.
    void sendEvent(const std::string &node, const char *action);

    /// Lets the device send one input report. An empty one is an end of file.
    void queueReport(const std::string &node, std::span<const std::uint8_t> report);

    /// How many of the queued input reports the program has not read yet.
    [[nodiscard]] std::size_t unreadReports(const std::string &node) const;

    /// Has writes to the node fail with `error`, or, at 0, take all bytes but `missing`.
    void setWriteResult(const std::string &node, int error, int missing = 0);

    /// Gives or takes everybody's permission to open the node.
    void setPermitted(const std::string &node, bool permitted);

    /// The writes that the node has seen, each with all its bytes.
    [[nodiscard]] std::vector<Bytes> writes(const std::string &node) const;

private:
    struct Unit;

    std::map<std::string, std::unique_ptr<Unit>> m_units;
    struct Bed;
    std::unique_ptr<Bed> m_bed;
};

} // namespace kavelo::test
