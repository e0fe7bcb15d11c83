#pragma once

#include "Models/Result.h"
#include "Platform/Permanence.h"
#include "Platform/Task.h"

namespace stillgate
{

/// The system's DNS proxy, which refuses the names of `blocked-config.json`.
class DNSProxy
{
public:
    virtual ~DNSProxy() = default;

    /// Sees to it that the proxy is installed and answers; false if it can't be. A second call does no harm.
    [[nodiscard]] virtual Task<bool> fullSetup() = 0;

    [[nodiscard]] virtual Task<Result<void>> disable() = 0;

    /// How the proxy is to stand: one that is on follows.
    virtual void setPermanence(Permanence permanence) = 0;
};

} // namespace stillgate
