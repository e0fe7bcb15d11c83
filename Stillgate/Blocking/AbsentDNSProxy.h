#pragma once

#include "Blocking/DNSProxy.h"

namespace stillgate
{

/// A machine on which no DNS proxy is installed: there is nothing to switch.
class AbsentDNSProxy final : public DNSProxy
{
public:
    [[nodiscard]] Task<bool> fullSetup() override { co_return false; }

    [[nodiscard]] Task<Result<void>> disable() override { co_return Result<void>{}; }
};

} // namespace stillgate
