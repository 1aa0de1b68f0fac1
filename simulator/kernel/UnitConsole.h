#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <unistd.h>

namespace kavelo {

class SimulatedUnit;
class UhidUnit;
struct Exchange;

/// Controls a unit by commands on standard input, and prints its exchanges on standard output.
class UnitConsole : public QObject
{
    Q_OBJECT

public:
    /// The list of commands, for the help and for the answer to an unknown command.
    static const QString Help;

    /// Both must outlive this object.
    UnitConsole(SimulatedUnit &unit, UhidUnit &plug);

    /// Plugs the unit in. When that fails, prints a line with the reason and the cure on standard
    /// error and returns false.
    bool plugIn();

Q_SIGNALS:
    /// Standard input has ended.
    void ended();

private:
    void readInput();
    void carryOut(const QByteArray &line);
    static void print(const Exchange &exchange);

    SimulatedUnit &m_unit;
    UhidUnit &m_plug;
    QSocketNotifier m_input{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_line; ///< the beginning of a line whose end has not come yet
};

} // namespace kavelo
