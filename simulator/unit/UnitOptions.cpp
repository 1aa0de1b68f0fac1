#include "UnitOptions.h"

#include "DemoSettings.h"
#include "SimulatedUnit.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace kavelo {
namespace {

/// Whether the text consists of this many decimal numbers from 0 to `max`, with dots between them.
bool areNumbers(const QString &text, int count, uint max)
{
    const QStringList parts = text.split(u'.');
    return parts.size() == count && std::ranges::all_of(parts, [max](const QString &part) {
               bool isNumber = false;
               return part.toUInt(&isNumber) <= max && isNumber;
           });
}

} // namespace

void UnitOptions::addTo(QCommandLineParser &parser) const
{
    parser.addOptions({m_pedals, m_version, m_delay});
}

void UnitOptions::process(QCommandLineParser &parser) const
{
    struct Numbers
    {
        const QCommandLineOption &option;
        int count;
        uint max;
    };
    const std::array<Numbers, 3> numbers{{{m_pedals, 1, 255},
                                          {m_version, 3, 255},
                                          {m_delay, 1, SimulatedUnit::MaxReplyDelay.count()}}};
    QString error;
    if (!parser.parse(QCoreApplication::arguments())) {
        error = parser.errorText();
    } else if (parser.isSet(QStringLiteral("help"))) {
        parser.showHelp();
    } else if (!parser.positionalArguments().isEmpty()) {
        error = QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments()[0]);
    }
    for (const auto &[option, count, max] : numbers) {
        if (error.isEmpty() && !areNumbers(parser.value(option), count, max)) {
            error = QStringLiteral("Wrong value '%1' of option '%2'. %3")
                        .arg(parser.value(option), option.names()[0], option.description());
        }
    }
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(QCoreApplication::applicationName()),
                     qPrintable(error));
        std::exit(2);
    }
}

void UnitOptions::apply(const QCommandLineParser &parser, SimulatedUnit &unit) const
{
    unit.memory().pedals = demoSettings();
    unit.memory().numberOfPedals = static_cast<std::uint8_t>(parser.value(m_pedals).toUInt());
    const QStringList version = parser.value(m_version).split(u'.');
    std::ranges::transform(version, unit.memory().version.begin(), [](const QString &number) {
        return static_cast<std::uint8_t>(number.toUInt());
    });
    unit.setReplyDelay(std::chrono::milliseconds(parser.value(m_delay).toUInt()));
}

} // namespace kavelo
