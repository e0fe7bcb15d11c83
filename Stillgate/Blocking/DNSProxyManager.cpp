#include "Blocking/DNSProxyManager.h"

namespace stillgate
{

namespace
{

constexpr auto extensionBundleIdentifier = "com.stillgate.macos.DNSProxy";
constexpr auto notApproved = "System extension was not approved. Enable it in System Settings > Privacy & Security.";

} // namespace

Task<bool> DNSProxyManager::fullSetup()
{
    checkStatus();
    if (!extensionInstalled && !co_await installExtension()) {
        setupError = notApproved;
        co_return false;
    }
    const auto set = co_await setupProxy();
    if (!set) {
        setupError = set.error().description();
        m_log.write("[DNSProxy] Setup failed: " + set.error().description());
    }
    co_return set.has_value();
}

Task<bool> DNSProxyManager::installExtension()
{
    const auto sayThatItWaits = [log = &m_log] {
        log->write("[DNSProxy] Waiting for user approval in System Settings > Privacy & Security");
    };
    const auto verdict = co_await m_extensions.activate(extensionBundleIdentifier, sayThatItWaits);
    if (!verdict) {
        setupError = verdict.error().description();
        m_log.write("[DNSProxy] System extension failed: " + verdict.error().description());
        co_return false;
    }
    extensionInstalled = *verdict;
    if (*verdict)
        m_log.write("[DNSProxy] System extension installed successfully");
    co_return *verdict;
}

Task<Result<void>> DNSProxyManager::setupProxy()
{
    if (const auto loaded = co_await m_preferences.load(); !loaded)
        co_return std::unexpected{loaded.error()};
    const auto enabled = co_await m_preferences.enable(extensionBundleIdentifier, m_permanence);
    if (!enabled)
        co_return std::unexpected{enabled.error()};
    isActive = true;
    setupError = std::nullopt;
    m_log.write("[DNSProxy] Proxy enabled successfully");
    co_return Result<void>{};
}

Task<Result<void>> DNSProxyManager::disable()
{
    if (const auto loaded = co_await m_preferences.load(); !loaded)
        co_return std::unexpected{loaded.error()};
    const auto disabled = co_await m_preferences.disable();
    if (!disabled)
        co_return std::unexpected{disabled.error()};
    isActive = false;
    m_log.write("[DNSProxy] Proxy disabled");
    co_return Result<void>{};
}

void DNSProxyManager::setPermanence(Permanence permanence)
{
    if (std::exchange(m_permanence, permanence) != permanence && isActive)
        runDetached(setupProxy());
}

void DNSProxyManager::checkStatus()
{
    runDetached(loadStatus());
}

Task<> DNSProxyManager::loadStatus()
{
    const auto setting = co_await m_preferences.load();
    if (!setting)
        co_return;
    isActive = setting->isEnabled;
    extensionInstalled = setting->hasProvider;
}

} // namespace stillgate
