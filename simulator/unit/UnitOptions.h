#pragma once

#include "PedalSetting.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

namespace kavelo {

class SimulatedUnit;

/// The command line options that set up a simulated unit.
class UnitOptions
{
public:
    void addTo(QCommandLineParser &parser) const;
    /// Parses the command line of the running program. When there is an error in it, prints a line
    /// on standard error and ends the program with status 2. Handles the help option, too.
    void process(QCommandLineParser &parser) const;
    /// Sets a unit up as the command line says. Its pedals get the demo's settings.
    void apply(const QCommandLineParser &parser, SimulatedUnit &unit) const;

private:
    const QCommandLineOption m_pedals{
        QStringLiteral("pedals"), QStringLiteral("Number of pedals, 0 to 255 (%1).").arg(MaxPedals),
        QStringLiteral("n"), QString::number(MaxPedals)};
    const QCommandLineOption m_version{
        {QStringLiteral("version"), QStringLiteral("firmware")},
        QStringLiteral("Firmware version, three numbers from 0 to 255 (2.1.0)."),
        QStringLiteral("version"),
        QStringLiteral("2.1.0")};
    const QCommandLineOption m_delay{QStringLiteral("delay"),
                                     QStringLiteral("Delay of a reply, 0 to 5000 ms (5)."),
                                     QStringLiteral("ms"), QStringLiteral("5")};
};

} // namespace kavelo
