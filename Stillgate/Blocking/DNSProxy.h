#pragma once

#include "Models/Result.h"
#include "Platform/Task.h"

namespace stillgate
{

/// The system's DNS proxy, which refuses the names of `blocked-config.json`.
class DNSProxy
{
public:
    virtual ~DNSProxy() = default;

    [[nodiscard]] virtual Task<Result<void>> disable() = 0;
};

} // namespace stillgate
