#include "Serving/CommandLine.h"

#include "DNSProxyVersion.h"

#include <algorithm>
#include <array>
#include <boost/asio/ip/address.hpp>
#include <charconv>

namespace stillgate::dns
{

namespace
{

constexpr auto usage = R"(Usage: stillgate-dnsproxy [options]

Answers the DNS queries of this machine: names that a user has blocked don't exist, all others are asked of the machine's
resolvers. The service manager hands over the sockets on which it listens; without one, --listen opens them.

  --listen ADDRESS:PORT     listen there, for UDP and TCP; port 0 takes a free one, and it is printed. As often as wanted
  --group DIRECTORY         where the users' folders are, each with blocked-config.json (/var/lib/stillgate/group)
  --state DIRECTORY         where the last good sets are kept ($STATE_DIRECTORY, or /var/lib/stillgate-dnsproxy)
  --upstream ADDRESS[:PORT] ask this resolver, not those of the machine. As often as wanted
  --resolv-conf FILE        where the machine names its resolvers (/etc/resolv.conf)
  --help, --version

An IPv6 address with a port stands in brackets: [::1]:53.

How it is, dig tells: dig -p PORT @ADDRESS CH TXT health.stillgate, and likewise version.stillgate, counts.stillgate.

Exit status: 0 after SIGTERM or SIGINT; 64 when the arguments make no sense; 1 for any failure, which is told on
standard error.
)";

constexpr std::uint16_t dnsPort = 53;

/// "ADDRESS", "ADDRESS:PORT" or "[ADDRESS]:PORT".
std::optional<Endpoint> endpointFrom(std::string_view text, std::optional<std::uint16_t> port)
{
    const bool isBracketed = text.starts_with('[');
    const auto addressEnd = isBracketed ? text.find(']') : text.find(':');
    const bool isBareIPv6 = !isBracketed && addressEnd != text.rfind(':');
    auto address = text;
    if (!isBareIPv6 && addressEnd != std::string_view::npos) {
        address = text.substr(isBracketed ? 1 : 0, addressEnd - (isBracketed ? 1 : 0));
        const auto rest = text.substr(addressEnd + (isBracketed ? 1 : 0));
        std::uint16_t number = 0;
        const auto [end, code] =
            std::from_chars(rest.data() + std::min<std::size_t>(1, rest.size()), rest.data() + rest.size(), number);
        if (!rest.empty() && (rest.front() != ':' || code != std::errc{} || end != rest.data() + rest.size()))
            return std::nullopt;
        if (!rest.empty())
            port = number;
    }
    boost::system::error_code error;
    const auto parsed = boost::asio::ip::make_address(std::string{address}, error);
    if (error || !port)
        return std::nullopt;
    return Endpoint{parsed, *port};
}

using Fault = std::unexpected<std::string>;

constexpr auto optionsWithValue =
    std::to_array<std::string_view>({"--listen", "--upstream", "--group", "--state", "--resolv-conf"});

std::optional<Fault> addEndpoint(
    std::vector<Endpoint>& endpoints, std::string_view value, std::optional<std::uint16_t> port)
{
    const auto endpoint = endpointFrom(value, port);
    if (!endpoint)
        return Fault{"\"" + std::string{value} + "\" is no address" + (port ? "" : " with a port")};
    endpoints.push_back(*endpoint);
    return std::nullopt;
}

/// One of those with a value.
std::optional<Fault> apply(std::string_view option, std::string_view value, CommandLine& line)
{
    if (option == "--listen")
        return addEndpoint(line.listen, value, std::nullopt);
    if (option == "--upstream")
        return addEndpoint(line.upstreams, value, dnsPort);
    if (option == "--group")
        line.group = value;
    else if (option == "--state")
        line.state = value;
    else
        line.resolvConf = value;
    return std::nullopt;
}

} // namespace

std::expected<CommandLine, std::string> parseCommandLine(
    std::span<const char* const> arguments, std::string_view stateDirectory)
{
    CommandLine line;
    if (!stateDirectory.empty())
        line.state = stateDirectory.substr(0, stateDirectory.find(':'));
    for (std::size_t next = 0; next < arguments.size(); next += 2) {
        const std::string_view option = arguments[next];
        if (option == "--help" || option == "-h" || option == "--version") {
            line.text = option == "--version" ? std::string{"stillgate-dnsproxy "} + version + '\n' : usage;
            return line;
        }
        if (std::ranges::find(optionsWithValue, option) == optionsWithValue.end())
            return Fault{"There is no option " + std::string{option}};
        if (next + 1 == arguments.size() || *arguments[next + 1] == '\0')
            return Fault{"The value of " + std::string{option} + " is missing"};
        if (const auto fault = apply(option, arguments[next + 1], line))
            return *fault;
    }
    return line;
}

} // namespace stillgate::dns
