#include "App/CommandLine.h"

#include <set>

namespace stillgate
{

namespace
{

constexpr auto usage = R"(Usage: stillgate
       stillgate --headless [--sign-in]
       stillgate --help | --version

Stillgate blocks what distracts you, on this machine, by the rules of your account.

  (no option)  the application: a status item, and windows where they are needed; a second start brings the first one
               forward
  --headless   run the engine without windows, until SIGTERM, SIGINT or SIGHUP
  --sign-in    with --headless: print a link, wait until you have approved this device there, and end
  --help       print this text
  --version    print the version

The log goes to standard error. Without the right to write /etc/hosts, sites aren't blocked there; the log says so, and
the rest goes on.

Exit status: 0 after a signal, --help, --version, a sign-in, or a second start; 64 when the arguments make no sense; 69
when there is no desktop to show windows on; 75 when signing in didn't work, or another one runs that can't be brought
forward; 78 when no backend is configured.
)";

constexpr auto hint = "; see stillgate --help\n";

bool isKnown(const std::string& option)
{
    static const std::set<std::string> known{"--headless", "--sign-in", "--help", "-h", "--version"};
    return known.contains(option);
}

} // namespace

CommandLineRequest parseCommandLine(std::span<const std::string> arguments, const std::string& version)
{
    if (arguments.empty())
        return RunDesktop{};
    if (arguments.size() > 2)
        return UsageError{std::string{"stillgate: too many options"} + hint};
    const std::set<std::string> options{arguments.begin(), arguments.end()};
    for (const auto& option : options) {
        if (!isKnown(option))
            return UsageError{"stillgate: unknown option '" + option + "'" + hint};
    }
    if (options == std::set<std::string>{"--headless", "--sign-in"})
        return SignIn{};
    if (options.size() > 1)
        return UsageError{std::string{"stillgate: these options don't go together"} + hint};
    if (options.contains("--headless"))
        return RunHeadless{};
    if (options.contains("--version"))
        return PrintAndExit{"stillgate " + version + "\n"};
    if (options.contains("--sign-in"))
        return UsageError{std::string{"stillgate: --sign-in goes with --headless; with windows, just start it"} + hint};
    return PrintAndExit{usage};
}

} // namespace stillgate
