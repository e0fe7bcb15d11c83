#pragma once

#include "Platform/Linux/Guard/GuardClient.h"
#include "Platform/Scheduler.h"
#include "Platform/SystemExtensions.h"

namespace stillgate
{

/// The DNS proxy, which the guard switches: to have it in place, and to have it asked, is one thing here.
class GuardDNSProxy final : public SystemExtensions, public DNSProxyPreferences
{
public:
    GuardDNSProxy(GuardClient& guard, Scheduler& scheduler)
        : m_guard(guard)
        , m_scheduler(scheduler)
    {}

    /// What stands for good stays so.
    [[nodiscard]] Task<Result<bool>> activate(
        std::string bundleIdentifier, std::function<void()> needsUserApproval) override;

    [[nodiscard]] Task<Result<Setting>> load() override;
    [[nodiscard]] Task<Result<void>> enable(std::string providerBundleIdentifier, Permanence permanence) override;
    [[nodiscard]] Task<Result<void>> disable() override;

private:
    GuardClient& m_guard;
    Scheduler& m_scheduler;
};

/// A machine without a guard: nothing is installed, and nothing can be.
class AbsentDNSProxySystem final : public SystemExtensions, public DNSProxyPreferences
{
public:
    [[nodiscard]] Task<Result<bool>> activate(std::string, std::function<void()>) override
    {
        co_return failure(absence());
    }

    [[nodiscard]] Task<Result<Setting>> load() override { co_return Setting{}; }

    [[nodiscard]] Task<Result<void>> enable(std::string, Permanence) override { co_return failure(absence()); }

    [[nodiscard]] Task<Result<void>> disable() override { co_return Result<void>{}; }

private:
    [[nodiscard]] static SystemFailure absence() { return {"ask the guard: it isn't installed on this machine"}; }
};

} // namespace stillgate
