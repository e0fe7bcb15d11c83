#include "Platform/Linux/TerminationSignals.h"
#include "tests/guard/ServiceManager.h"

#include <QCoreApplication>

#include <iostream>

/// `stillgate-test-units UNIT_FOLDER ROOT [UNIT...]`: a service manager on the system bus (DBUS_SYSTEM_BUS_ADDRESS)
/// that runs the units of a folder, with the programs below a root where they are there, and starts those named.
int main(int argc, char** argv)
{
    stillgate::TerminationSignals::holdBack();
    const QCoreApplication application{argc, argv};
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        std::cerr << "stillgate-test-units UNIT_FOLDER ROOT [UNIT...]\n";
        return EXIT_FAILURE;
    }
    const stillgate::TerminationSignals signals{[] { QCoreApplication::quit(); }};
    stillgate::test::UnitRunner units{QDir{arguments[1]}, QDir{arguments[2]}};
    stillgate::test::ServiceManager manager{units};
    try {
        for (const auto& unit : arguments.mid(3))
            units.start(unit);
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        return EXIT_FAILURE;
    }
    if (!manager.appear()) {
        std::cerr << "no system bus, or its service manager is there already\n";
        return EXIT_FAILURE;
    }
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
