#include "UnitConsole.h"

#include "ExchangeText.h"
#include "SimulatedUnit.h"
#include "UhidUnit.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace kavelo {
namespace {

/// What the user can do about an errno of plugging in. Empty for other errnos.
const char *cure(int error)
{
    switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return "; load the kernel's module first: sudo modprobe uhid";
    case EACCES:
    case EPERM:
        return "; start kavelo-unit with sudo";
    default:
        return "";
    }
}

void printLine(const QString &text)
{
    std::puts(qPrintable(text));
    std::fflush(stdout);
}

} // namespace

const QString UnitConsole::Help =
    QStringLiteral("unplug, plug, drop (the next reply), delay MS (the next reply)");

UnitConsole::UnitConsole(SimulatedUnit &unit, UhidUnit &plug)
    : m_unit(unit)
    , m_plug(plug)
{
    connect(&m_input, &QSocketNotifier::activated, this, &UnitConsole::readInput);
    connect(&unit, &SimulatedUnit::exchanged, this, &UnitConsole::print);
    connect(&unit, &SimulatedUnit::poweredChanged, this, [](bool powered) {
        printLine(powered ? QStringLiteral("plugged in") : QStringLiteral("unplugged"));
    });
}

bool UnitConsole::plugIn()
{
    const int error = m_plug.plugIn();
    if (error != 0) {
        const std::string reason = std::generic_category().message(error);
        std::fprintf(stderr, "kavelo-unit: cannot use /dev/uhid: %s%s\n", reason.c_str(),
                     cure(error));
    }
    return error == 0;
}

void UnitConsole::readInput()
{
    std::array<char, 256> bytes{};
    const ssize_t size = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (size <= 0) {
        m_input.setEnabled(false);
        m_unit.setPowered(false);
        Q_EMIT ended();
        return;
    }
    m_line.append(bytes.data(), size);
    for (qsizetype end = m_line.indexOf('\n'); end >= 0; end = m_line.indexOf('\n')) {
        carryOut(m_line.first(end).simplified());
        m_line.remove(0, end + 1);
    }
}

void UnitConsole::carryOut(const QByteArray &line)
{
    bool isNumber = false;
    const int delay = line.startsWith("delay ") ? line.sliced(6).toInt(&isNumber) : 0;
    if (line == "plug") {
        plugIn();
    } else if (line == "unplug") {
        m_unit.setPowered(false);
    } else if (line == "drop") {
        m_unit.setFault({.kind = FaultKind::DropReply, .exchange = 1});
    } else if (isNumber) {
        m_unit.setLateness(std::chrono::milliseconds(delay));
        m_unit.setFault({.kind = FaultKind::AnswerLate, .exchange = 1});
    } else {
        std::fprintf(stderr, "kavelo-unit: a line is one of %s\n", qPrintable(Help));
    }
}

/// Prints an exchange when it is over.
void UnitConsole::print(const Exchange &exchange)
{
    if (exchange.outcome != Exchange::Outcome::Waiting) {
        printLine(QStringLiteral("%1  %2  %3  %4")
                      .arg(timeText(exchange), hexText(exchange.request), replyText(exchange),
                           commandText(exchange)));
    }
}

} // namespace kavelo
