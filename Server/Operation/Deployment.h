#pragma once

#include "Operation/Configuration.h"

#include <filesystem>
#include <string>
#include <vector>

namespace stillgate::server
{

/// What `stillgate-server init` is asked for.
struct DeploymentRequest
{
    std::filesystem::path folder;
    std::vector<std::string> hosts; ///< names and addresses of the server, the one that applications use first
    Configuration configuration;
};

/// Makes everything that a server of one's own needs, in a folder of its own:
///
///   server.toml               the configuration
///   server.pem, server.key    certificate and key
///   authority.pem, .key       the authority that signed it
///   spare.key                 the key for the day when the other one has to go: best kept elsewhere
///   stillgate.db              the database
///   deployment.json           what an application is built with: addresses, pins, trust anchor; nothing secret
///
/// Gives the two pins, that of the server's key and that of the spare. Throws std::runtime_error, and leaves what is
/// there, if the folder isn't empty.
std::vector<std::string> makeDeployment(const DeploymentRequest& request);

/// Gives the server a new certificate for the same key and hosts.
void renewCertificate(const std::filesystem::path& folder);

} // namespace stillgate::server
