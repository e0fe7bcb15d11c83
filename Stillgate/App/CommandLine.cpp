#include "App/CommandLine.h"

namespace stillgate
{

namespace
{

constexpr auto usage = R"(Usage: stillgate --headless
       stillgate --help | --version

Stillgate blocks what distracts you, on this machine, by the rules of your account.

  --headless   run the engine without windows, until SIGTERM, SIGINT or SIGHUP
  --help       print this text
  --version    print the version

The engine writes its log to standard error. It needs the right to write /etc/hosts to block sites; without it, it
says so and goes on.

Exit status: 0 after a signal, --help or --version; 64 when the arguments make no sense.
)";

} // namespace

CommandLineRequest parseCommandLine(std::span<const std::string> arguments, const std::string& version)
{
    if (arguments.size() != 1)
        return UsageError{arguments.empty() ? usage : "stillgate: one option at a time; see stillgate --help\n"};
    const auto& option = arguments.front();
    if (option == "--headless")
        return RunHeadless{};
    if (option == "--help" || option == "-h")
        return PrintAndExit{usage};
    if (option == "--version")
        return PrintAndExit{"stillgate " + version + "\n"};
    return UsageError{"stillgate: unknown option '" + option + "'; see stillgate --help\n"};
}

} // namespace stillgate
