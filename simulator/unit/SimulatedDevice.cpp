#include "SimulatedDevice.h"

#include "SimulatedUnit.h"

#include <algorithm>
#include <utility>

namespace kavelo {

SimulatedDevice::SimulatedDevice(bus::AttachmentRef attachment)
    : m_attachment(std::move(attachment))
{
}

void SimulatedDevice::registerInputReportCallback(std::span<std::uint8_t, hid::ReportSize> buffer,
                                                  InputReportCallback callback, void *context)
{
    m_reception.reset();
    if (callback == nullptr || m_attachment->unit == nullptr) {
        return;
    }
    m_reception = std::make_unique<QObject>();
    // When a unit is plugged in again, only its new device gets its replies.
    QObject::connect(
        m_attachment->unit, &SimulatedUnit::inputReport, m_reception.get(),
        [attachment = m_attachment, buffer, callback, context](const hid::Report &report) {
            if (attachment->unit != nullptr) {
                std::ranges::copy(report, buffer.begin());
                callback(context, buffer);
            }
        });
}

bool SimulatedDevice::setReport(std::span<const std::uint8_t, hid::ReportSize> report)
{
    hid::Report request{};
    std::ranges::copy(report, request.begin());
    return m_attachment->unit != nullptr && m_attachment->unit->receive(request);
}

} // namespace kavelo
