#pragma once

#include "App/AppState.h"
#include "Platform/HostsBlock.h"
#include "Platform/Memory/MemoryBundle.h"
#include "tests/support/MemoryMachine.h"
#include "tests/support/Samples.h"

namespace stillgate::test
{

class RecordingMonitor final : public AppMonitor
{
public:
    RecordingMonitor() { blockedAppAttempts = 4; }

    void setConfiguration(ProcessMonitorConfiguration newConfiguration) override
    {
        configuration = std::move(newConfiguration);
        ++configurations;
    }

    void updateBudget(const std::optional<ScreenTimeBudget>& newBudget) override { budget = newBudget; }

    void startMonitoring() override { isMonitoring = true; }

    void stopMonitoring() override
    {
        isMonitoring = false;
        isStopped = true;
    }

    void startQuickBlock(const std::set<std::string>& bundleIds, const std::set<std::string>& domains,
        std::int64_t durationMinutes) override
    {
        activeQuickBlock =
            QuickBlockSession{.bundleIds = bundleIds, .domains = domains, .durationMinutes = durationMinutes};
    }

    void stopQuickBlock() override { activeQuickBlock = std::nullopt; }

    [[nodiscard]] const std::string& guardianFlexibilityMode() const override
    {
        return configuration.guardianFlexibilityMode;
    }

    ProcessMonitorConfiguration configuration;
    int configurations = 0;
    std::optional<ScreenTimeBudget> budget;
    bool isStopped = false;
};

class RecordingTracker final : public UsageTracker
{
public:
    void startTracking() override { isTracking = true; }

    void stopTracking() override { isTracking = false; }

    [[nodiscard]] std::int64_t minutesToday() override { return minutes; }

    [[nodiscard]] AppUsage usageToday() override { return usage; }

    Task<> reportToBackend() override
    {
        ++reports;
        co_return;
    }

    bool isTracking = false;
    std::int64_t minutes = 0;
    AppUsage usage;
    int reports = 0;
};

class RecordingDNSProxy final : public DNSProxy
{
public:
    Task<bool> fullSetup() override
    {
        ++setUps;
        if (const auto approved = approval)
            co_await *approved;
        co_return false;
    }

    Task<Result<void>> disable() override
    {
        ++disabled;
        co_return failure(SystemFailure{"no proxy"});
    }

    void setPermanence(Permanence newPermanence) override { permanence = newPermanence; }

    int setUps = 0;
    Permanence permanence = Permanence::flexible;
    std::shared_ptr<OneShotEvent> approval; ///< what the set-up waits for, if there is one
    int disabled = 0;
};

/// An AppState on a desktop in memory, set up and with a stored session, before its start.
class AppStateFixture : public MemoryMachine
{
protected:
    AppStateFixture()
    {
        m_files.put(hostsPath, "127.0.0.1 localhost\n");
        m_writer.isPermitted = true;
        m_bundle.infoValues["CFBundleShortVersionString"] = "1.4.0";
        m_defaults.setBoolean("sg_onboarding_complete", true);
        m_backend.appConfig = AppConfig{};
    }

    virtual Backend& backend() { return m_backend; }

    AppServices services()
    {
        return {backend(), m_hostsFile, m_monitor, m_tracker, m_dnsProxy, m_bundle, m_files, m_log, m_notifications,
            m_time, m_defaults};
    }

    AppState& state()
    {
        if (!m_state)
            m_state.emplace(services());
        return *m_state;
    }

    void bootstrap() { await(state().bootstrap()); }

    void restart() { m_state.reset(); }

    void startOnline()
    {
        m_backend.answerFirstLoad();
        bootstrap();
    }

    void expectFlags(bool authenticated, bool offline)
    {
        EXPECT_EQ(state().isAuthenticated.value(), authenticated);
        EXPECT_EQ(state().isOffline.value(), offline);
    }

    [[nodiscard]] bool areTimersRunning() const { return m_time.pendingTimers() == 2; }

    [[nodiscard]] std::vector<std::string> blockedNames() const { return m_hostsFile.getBlockedDomains(); }

    static constexpr auto cacheFile = "/home/ada/.local/share/com.stillgate.macos/cache/state.dat";
    static constexpr auto configFile = "/var/lib/stillgate/group/1000/blocked-config.json";

    MemoryBundle m_bundle;
    NotificationCenter m_notifications;
    RecordingMonitor m_monitor;
    RecordingTracker m_tracker;
    RecordingDNSProxy m_dnsProxy;

private:
    std::optional<AppState> m_state;
};

/// A cache file with one rule, which blocks cached.example, and one device.
inline constexpr auto cachedSession = R"({
    "streak":{"currentStreakDays":7,"longestStreakDays":9},
    "blockRules":[{"id":"r1","enabled":true,"customDomains":["cached.example"],"excludedDomains":[],
        "unblockPolicy":"flexible","createdAt":789012345.25}],
    "devices":[{"id":"cached-device","deviceName":"Desk","platform":"macos","isActive":true}],
    "schedules":[],"tasks":[],"budget":{"dailyLimitMinutes":60,"earnedMinutesToday":0,"usedMinutesToday":0,
        "pendingTaskCount":0,"completedTaskCount":0},"connections":[],"unheardOf":1})";

} // namespace stillgate::test
