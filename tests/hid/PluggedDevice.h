#pragma once

#include "SimulatedUnit.h"
#include "WaitUntil.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kavelo::test {

using Bytes = std::vector<std::uint8_t>;

/// What is plugged in: by default the unit.
struct DeviceKind
{
    const char *hidId = "0003:00001209:00000001";
    const char *descriptor = "0600ff0901a101150026ff007508951009028102" // as the unit's
                             "09039102c0";
    SimulatedUnit *firmware = nullptr; ///< takes the node's requests and answers them
    const char *subsystem = "hidraw";  ///< only a mocked device can be in another one
};

/// A HID device that is plugged in as long as this object lives. The program sees it in sysfs, in
/// udev's events, and as a hidraw node that carries reports. When the constructor or the destructor
/// returns, udev has sent its event, and the event loop has not run.
class PluggedDevice
{
    Q_DISABLE_COPY_MOVE(PluggedDevice)

public:
    virtual ~PluggedDevice() = default;

    /// Takes the device away at once: the node is dead, but the program does not know it yet.
    virtual void cut() = 0;
    /// Sends an event of udev about a mocked device. Does nothing for a real device, because udev
    /// itself sends its events.
    virtual void sendEvent(const char * /*action*/) {}
    /// Lets the device send one input report.
    virtual void queueReport(std::span<const std::uint8_t> report) = 0;
    /// The node's name for the program, and the file that is behind it.
    [[nodiscard]] virtual std::string node() const = 0;
    [[nodiscard]] virtual std::string path() const { return node(); }

    /// The reports that the program has sent and the event loop has delivered, each with its
    /// report ID.
    std::vector<Bytes> writes;

protected:
    explicit PluggedDevice(SimulatedUnit *firmware)
        : m_firmware(firmware)
    {
    }
    void powerOn()
    {
        if (m_firmware) {
            m_firmware->setPowered(true);
            QObject::connect(m_firmware, &SimulatedUnit::inputReport, &m_connection,
                             [this](const hid::Report &reply) { queueReport(reply); });
            QObject::connect(m_firmware, &SimulatedUnit::poweredChanged, &m_connection,
                             [this] { cut(); });
        }
    }
    void powerOff()
    {
        if (m_firmware) {
            m_firmware->setPowered(false);
        }
    }
    void receive(std::span<const std::uint8_t> message)
    {
        writes.emplace_back(message.begin(), message.end());
        hid::Report request = {};
        if (m_firmware && message.size() == 1 + request.size()) {
            std::ranges::copy(message.subspan(1), request.begin());
            m_firmware->receive(request);
        }
    }

private:
    SimulatedUnit *m_firmware;
    QObject m_connection;
};

/// Whether devices are plugged into this computer's own kernel and found by its own udev. Where
/// that is not possible, they are mocked.
[[nodiscard]] bool areDevicesReal();

[[nodiscard]] std::unique_ptr<PluggedDevice> plugIn(const DeviceKind &kind = {});

} // namespace kavelo::test
