#include "Platform/Linux/StandardErrorLog.h"
#include "Serving/Proxy.h"

#include <csignal>
#include <iostream>
#include <malloc.h>
#include <sodium.h>
#include <sys/stat.h>
#include <sysexits.h>

namespace
{

using namespace stillgate;
using namespace stillgate::dns;

int fail(const std::string& why)
{
    std::cerr << "stillgate-dnsproxy: " << why << '\n';
    return EXIT_FAILURE;
}

void blockTerminationSignals()
{
    sigset_t signals{};
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGTERM);
    ::sigaddset(&signals, SIGINT);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
}

int serve(const CommandLine& line)
{
    auto sockets = line.listen.empty() ? socketsOfServiceManager() : openSockets(line.listen);
    if (!sockets)
        return fail(sockets.error().description());
    if (sockets->datagram.empty())
        return fail("no socket to listen on: neither from a service manager nor by --listen");
    if (!line.listen.empty()) {
        for (const auto& address : sockets->addresses)
            std::cout << "Listening on " << address << std::endl; // whoever waits for the line reads a pipe
    }
    StandardErrorLog log;
    Proxy{line, std::move(*sockets), log}.run();
    return EX_OK;
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    blockTerminationSignals();  // the event loop takes them
    ::umask(S_IRWXG | S_IRWXO); // which sites a user has blocked is nobody else's business

    // A set goes back to the system when another one takes its place. One heap for each thread: the one that answers
    // never waits for the other one's, which runs when there is time.
    ::mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    ::mallopt(M_ARENA_MAX, 2);
    if (sodium_init() < 0)
        return fail("libsodium can't be used on this machine");
    const auto* stateDirectory = std::getenv("STATE_DIRECTORY");
    const auto line = parseCommandLine({argv + std::min(argc, 1), static_cast<std::size_t>(std::max(argc - 1, 0))},
        stateDirectory == nullptr ? "" : stateDirectory);
    if (!line) {
        std::cerr << "stillgate-dnsproxy: " << line.error() << "; see stillgate-dnsproxy --help\n";
        return EX_USAGE;
    }
    if (line->text) {
        std::cout << *line->text;
        return EX_OK;
    }
    try {
        return serve(*line);
    } catch (const std::exception& fault) {
        return fail(fault.what());
    }
}
