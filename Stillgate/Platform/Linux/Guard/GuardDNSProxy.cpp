#include "Platform/Linux/Guard/GuardDNSProxy.h"

namespace stillgate
{

namespace
{

/// Without a person to ask, the guard answers sooner.
constexpr std::chrono::seconds withoutAskingAnybody{2};

} // namespace

Task<Result<bool>> GuardDNSProxy::activate(std::string, std::function<void()> needsUserApproval)
{
    const auto status = co_await m_guard.status();
    if (!status)
        co_return std::unexpected{status.error()};
    // Switched on before, for good perhaps: then only enable() says how it is to stand.
    if (status->isDNSProxyEnabled || status->hasContainer)
        co_return true;
    const auto asking = m_scheduler.once(withoutAskingAnybody, needsUserApproval);
    const auto enabled = co_await m_guard.enableDNSProxy(Permanence::flexible);
    if (!enabled)
        co_return std::unexpected{enabled.error()};
    co_return true;
}

Task<Result<DNSProxyPreferences::Setting>> GuardDNSProxy::load()
{
    const auto status = co_await m_guard.status();
    if (!status)
        co_return std::unexpected{status.error()};
    co_return Setting{.isEnabled = status->isDNSProxyEnabled, .hasProvider = status->isDNSProxyEnabled};
}

Task<Result<void>> GuardDNSProxy::enable(std::string, Permanence permanence)
{
    return m_guard.enableDNSProxy(permanence);
}

Task<Result<void>> GuardDNSProxy::disable()
{
    return m_guard.disableDNSProxy();
}

} // namespace stillgate
