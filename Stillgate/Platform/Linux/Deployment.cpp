#include "Platform/Linux/Deployment.h"

#include "DeploymentValues.h"

#include <iterator>

namespace stillgate
{

Deployment builtInDeployment()
{
    const std::string anchor = deploymentvalues::trustAnchor;
    return {
        .baseURL = deploymentvalues::baseURL,
        .webSiteURL = deploymentvalues::webSiteURL,
        .pinnedHashes = {std::begin(deploymentvalues::pins), std::end(deploymentvalues::pins)},
        .trustAnchor = anchor.empty() ? std::nullopt : std::optional{anchor},
    };
}

} // namespace stillgate
