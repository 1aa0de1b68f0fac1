#pragma once

#include "Hid.h"
#include "SimulatedBus.h"

#include <QObject>

namespace kavelo {

/// An attachment of a simulated unit as a device of a HID manager.
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
    std::unique_ptr<QObject> m_reception; ///< owns the connection while a callback is registered
};

} // namespace kavelo
