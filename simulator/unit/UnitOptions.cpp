#include "UnitOptions.h"

#include "DemoSettings.h"
#include "SimulatedUnit.h"

#include <QVersionNumber>

namespace kavelo {

void UnitOptions::addTo(QCommandLineParser &parser) const
{
    parser.addOptions({m_pedals, m_version, m_delay});
}

void UnitOptions::apply(const QCommandLineParser &parser, SimulatedUnit &unit) const
{
    unit.memory().pedals = demoSettings();
    unit.memory().numberOfPedals = static_cast<std::uint8_t>(parser.value(m_pedals).toUInt());
    const auto version = QVersionNumber::fromString(parser.value(m_version));
    for (int i = 0; i < 3; ++i) {
        unit.memory().version.at(static_cast<std::size_t>(i)) =
            static_cast<std::uint8_t>(version.segmentAt(i));
    }
    unit.setReplyDelay(std::chrono::milliseconds(parser.value(m_delay).toUInt()));
}

} // namespace kavelo
