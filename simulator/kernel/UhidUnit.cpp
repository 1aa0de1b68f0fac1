#include "UhidUnit.h"

#include "SimulatedUnit.h"

#include <QCoreApplication>

#include <algorithm>

namespace kavelo {

UhidUnit::UhidUnit(SimulatedUnit &unit)
    : m_unit(unit)
{
    connect(&m_device, &UhidDevice::reportReceived, this, &UhidUnit::receive);
    connect(&unit, &SimulatedUnit::inputReport, this,
            [this](const hid::Report &report) { m_device.sendReport(report); });
    connect(&unit, &SimulatedUnit::poweredChanged, this, [this](bool powered) {
        if (!powered) {
            m_device.unplug();
        }
    });
}

int UhidUnit::plugIn()
{
    if (m_device.isPluggedIn()) {
        return 0;
    }
    const int error = m_device.plugIn(
        {.name = QByteArrayLiteral("Kavelo simulated by kavelo-unit"),
         .uniqueId = "kavelo-unit-" + QByteArray::number(QCoreApplication::applicationPid()),
         .vendorId = SimulatedUnit::matching().vendorId,
         .productId = SimulatedUnit::matching().productId,
         .reportDescriptor = QByteArray::fromHex(UnitReportDescriptor)});
    m_unit.setPowered(error == 0);
    return error;
}

void UhidUnit::receive(const QByteArray &report)
{
    hid::Report request{};
    // The first byte is the report ID.
    if (report.size() == 1 + std::ssize(request)) {
        std::copy(report.begin() + 1, report.end(), request.begin());
        m_unit.receive(request);
    }
}

} // namespace kavelo
