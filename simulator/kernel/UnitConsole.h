#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <unistd.h>

namespace kavelo {

class SimulatedUnit;
class UhidUnit;
struct Exchange;

/// Drives a unit by the lines of standard input and lists its exchanges on standard output.
class UnitConsole : public QObject
{
    Q_OBJECT

public:
    /// What a line may say, for the help and for whoever has written something else.
    static const QString Help;

    /// Both must outlive this.
    UnitConsole(SimulatedUnit &unit, UhidUnit &plug);

    /// Plugs the unit in. When that fails, one line on standard error says why and what to do.
    bool plugIn();

Q_SIGNALS:
    /// Standard input has come to its end.
    void ended();

private:
    void readInput();
    void carryOut(const QByteArray &line);
    static void print(const Exchange &exchange);

    SimulatedUnit &m_unit;
    UhidUnit &m_plug;
    QSocketNotifier m_input{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_line; ///< as much of it as has come
};

} // namespace kavelo
