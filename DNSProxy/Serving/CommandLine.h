#pragma once

#include "System/Datagrams.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

namespace stillgate::dns
{

/// What the program is asked to do.
struct CommandLine
{
    std::vector<Endpoint> listen;
    std::vector<Endpoint> upstreams; ///< none: those of the machine
    std::filesystem::path group = "/var/lib/stillgate/group";
    std::filesystem::path state = "/var/lib/stillgate-dnsproxy";
    std::filesystem::path resolvConf = "/etc/resolv.conf";
    std::optional<std::string> text; ///< to be printed, and nothing else to be done
};

/// The arguments without the program's own name, or a sentence about what is wrong with them. `stateDirectory` is what
/// the service manager has made for this program, empty if nothing.
[[nodiscard]] std::expected<CommandLine, std::string> parseCommandLine(
    std::span<const char* const> arguments, std::string_view stateDirectory);

} // namespace stillgate::dns
