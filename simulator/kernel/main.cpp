#include "SimulatedUnit.h"
#include "UhidUnit.h"
#include "UnitConsole.h"
#include "UnitOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kavelo-unit"));
    const kavelo::UnitOptions options;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Plugs a simulated Kavelo into this computer's kernel until its input ends "
                       "or Ctrl+C is pressed. Lines of its input: %1.")
            .arg(kavelo::UnitConsole::Help));
    parser.addHelpOption();
    options.addTo(parser);
    options.process(parser);

    kavelo::SimulatedUnit unit;
    options.apply(parser, unit);
    kavelo::UhidUnit plug(unit);
    kavelo::UnitConsole console(unit, plug);
    QObject::connect(&console, &kavelo::UnitConsole::ended, &application, &QCoreApplication::quit);
    return console.plugIn() ? QCoreApplication::exec() : 1;
}
