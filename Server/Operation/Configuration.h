#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace stillgate::server
{

/// How a server is run, from its configuration file (TOML). Paths in it are relative to its folder.
struct Configuration
{
    std::string address = "0.0.0.0"; ///< to listen on with TLS
    std::uint16_t port = 8743;
    std::filesystem::path certificate; ///< PEM chain
    std::filesystem::path key;         ///< PEM
    std::string database;              ///< path or postgresql:// URL, as Database takes it

    /// Also serves the web site, and it alone, on plain HTTP on this port of the loopback address; 0 doesn't, and
    /// nothing takes a free one.
    bool hasLoopbackSite = false;
    std::uint16_t loopbackSitePort = 0;

    /// Where people's browsers find the web site: "https://stillgate.example". Empty with a loopback site, which is
    /// its own address.
    std::string webSite;
};

/// A configuration that can't be read or followed, in a sentence that names the file.
class ConfigurationFault : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Throws a ConfigurationFault.
[[nodiscard]] Configuration readConfiguration(const std::filesystem::path& file);

/// Where the database of a configuration in that folder is: a path is relative to it.
[[nodiscard]] std::string databaseIn(const std::filesystem::path& folder, const std::string& database);

/// The text of a new configuration file, with a comment at each value.
[[nodiscard]] std::string configurationText(const Configuration& configuration);

} // namespace stillgate::server
