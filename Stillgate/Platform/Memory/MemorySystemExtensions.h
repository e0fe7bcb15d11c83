#pragma once

#include "Platform/OneShotEvent.h"
#include "Platform/SystemExtensions.h"

#include <cerrno>

namespace stillgate
{

/// A system that refuses every extension until a test lets it in.
class MemorySystemExtensions final : public SystemExtensions, public DNSProxyPreferences
{
public:
    [[nodiscard]] Task<Result<bool>> activate(std::string, std::function<void()> needsUserApproval) override
    {
        ++activations;
        if (const auto waiting = approval) {
            needsUserApproval();
            co_await *waiting;
        }
        co_return verdict;
    }

    [[nodiscard]] Task<Result<Setting>> load() override { co_return setting; }

    [[nodiscard]] Task<Result<void>> enable(std::string, Permanence newPermanence) override
    {
        if (!isPermitted)
            co_return failure(SystemFailure{"save the setting", EPERM});
        setting = {.isEnabled = true, .hasProvider = true};
        permanence = newPermanence;
        co_return Result<void>{};
    }

    [[nodiscard]] Task<Result<void>> disable() override
    {
        if (!isPermitted)
            co_return failure(SystemFailure{"save the setting", EPERM});
        setting.isEnabled = false;
        co_return Result<void>{};
    }

    Result<bool> verdict = failure(SystemFailure{"activate the extension", EPERM});
    std::shared_ptr<OneShotEvent> approval; ///< what an activation waits for, if there is one
    bool isPermitted = false;               ///< the setting can be changed
    Setting setting;
    Permanence permanence = Permanence::flexible;
    int activations = 0;
};

} // namespace stillgate
