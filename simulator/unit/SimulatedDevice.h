#pragma once

#include "Hid.h"
#include "SimulatedBus.h"

#include <QObject>

namespace kavelo {

/// One stay of a simulated unit on the bus as a HID manager's device.
class SimulatedDevice : public hid::Device
{
public:
    explicit SimulatedDevice(bus::AttachmentRef attachment);

    [[nodiscard]] const bus::AttachmentRef &attachment() const { return m_attachment; }

    void registerInputReportCallback(std::span<std::uint8_t, hid::ReportSize> buffer,
                                     InputReportCallback callback, void *context) override;
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, hid::ReportSize> report) override;

private:
    bus::AttachmentRef m_attachment;
    std::unique_ptr<QObject> m_reception; ///< holds the connection while a callback is on
};

} // namespace kavelo
