#pragma once

#include <optional>
#include <set>
#include <string>

namespace stillgate
{

/// Which backend the program belongs to (docs/deployment.md). Nothing in it is secret.
struct Deployment
{
    std::string baseURL;
    std::string webSiteURL;
    std::set<std::string> pinnedHashes;     ///< two, as by PublicKeyPin::spkiHash
    std::optional<std::string> trustAnchor; ///< PEM; one authority beside those that the machine trusts
};

/// The one that was fixed when the program was built. In a library of its own, so that all else builds without it.
[[nodiscard]] Deployment builtInDeployment();

} // namespace stillgate
