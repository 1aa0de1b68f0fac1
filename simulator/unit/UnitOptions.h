#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>

namespace kavelo {

class SimulatedUnit;

/// The command line options that say what a simulated unit is like.
class UnitOptions
{
public:
    void addTo(QCommandLineParser &parser) const;
    /// Makes a unit what a parsed command line says. Its pedals have the demo's settings.
    void apply(const QCommandLineParser &parser, SimulatedUnit &unit) const;

private:
    const QCommandLineOption m_pedals{QStringLiteral("pedals"),
                                      QStringLiteral("Number of pedals (5)."), QStringLiteral("n"),
                                      QStringLiteral("5")};
    const QCommandLineOption m_version{{QStringLiteral("version"), QStringLiteral("firmware")},
                                       QStringLiteral("Firmware version (2.1.0)."),
                                       QStringLiteral("version"),
                                       QStringLiteral("2.1.0")};
    const QCommandLineOption m_delay{
        QStringLiteral("delay"), QStringLiteral("How long the unit takes for a reply, in ms (5)."),
        QStringLiteral("ms"), QStringLiteral("5")};
};

} // namespace kavelo
