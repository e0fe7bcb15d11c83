#include "App/ServiceRunner.h"

#include "Models/BlockRules.h"

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

/// How long the end of the program waits for its last report.
constexpr auto longestReport = 2s;
/// How long it waits for a write of the hosts file. What changes the file comes to its end by itself.
constexpr auto longestWrite = 10s;

Task<> drop(Task<Result<void>> task)
{
    (void)co_await task;
}

} // namespace

ServiceRunner::ServiceRunner(AppState& state, const AppServices& services)
    : m_state(state)
    , m_services(services)
{}

void ServiceRunner::startServices()
{
    std::vector<std::string> domains;
    for (const auto& rule : m_state.blockRules.value()) {
        if (rule.enabled)
            domains.insert(domains.end(), rule.customDomains.begin(), rule.customDomains.end());
    }
    runDetached(start(std::move(domains)));
}

Task<> ServiceRunner::start(std::vector<std::string> domains)
{
    const bool hasProxy = co_await m_services.dnsProxy.fullSetup();
    if (!m_state.isAuthenticated)
        co_return; // signed out while the user was asked to approve the proxy
    if (hasProxy)
        m_state.syncBlockingState(); // the folder that is shared with the proxy may be new
    if (!domains.empty())
        m_services.hostsFile.applyBlocks(std::move(domains));
    m_services.monitor.startMonitoring();
}

Task<> ServiceRunner::applicationWillTerminate()
{
    if (m_services.monitor.guardianFlexibilityMode() == permanentMode) {
        auto report =
            m_services.backend.reportTampering("app_deletion_attempt", "App terminated while in permanent mode");
        co_await waitAtMost(&m_services.scheduler, longestReport, drop(std::move(report)));
    }
    m_services.monitor.stopMonitoring();
    m_services.tracker.stopTracking();
    co_await settle();
}

Task<> ServiceRunner::settle()
{
    co_await waitAtMost(&m_services.scheduler, longestWrite, m_services.hostsFile.settled());
}

} // namespace stillgate
