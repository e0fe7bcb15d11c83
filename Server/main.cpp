#include "Operation/Commands.h"
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/StandardErrorLog.h"
#include "ServerVersion.h"

#include <QCoreApplication>

#include <csignal>
#include <iostream>
#include <sodium.h>
#include <sys/stat.h>

int main(int argc, char** argv)
{
    // Somebody who stops reading the log or an answer ends neither the server nor the other answers.
    std::signal(SIGPIPE, SIG_IGN);

    // Keys and databases are nobody else's on this machine.
    ::umask(S_IRWXG | S_IRWXO);

    // The database drivers are plugins of it.
    const QCoreApplication application{argc, argv};
    if (sodium_init() < 0) {
        std::cerr << "stillgate-server: libsodium can't be used on this machine\n";
        return EXIT_FAILURE;
    }
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const stillgate::LinuxClock clock;
    stillgate::StandardErrorLog log;
    return stillgate::server::runCommand(arguments, stillgate::server::version, clock, log);
}
