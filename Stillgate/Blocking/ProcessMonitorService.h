#pragma once

#include "Blocking/AppMonitor.h"
#include "Blocking/BlockModal.h"
#include "Blocking/BrowserWatch.h"
#include "Blocking/Budget.h"
#include "Blocking/QuickBlock.h"
#include "Platform/Host.h"
#include "Platform/Workspace.h"

#include <map>

namespace stillgate
{

/// Watches which app is in front, by what the desktop tells and by a look every two seconds, and stops the forbidden:
/// a flexible block hides the app, a strict one quits it, and the block screen comes up. The browser watch looks at
/// the sites.
class ProcessMonitorService final : public AppMonitor
{
public:
    /// What it works with. All of it outlives the event loop.
    struct Desktop
    {
        Workspace& workspace;
        BrowserScripting& browsers;
        BlockModalPresenter& blockModal;
        HostsFileService& hostsFile;
        UserNotifications& userNotifications;
        Clock& clock;
        Scheduler& scheduler;
        Host& host;
    };

    explicit ProcessMonitorService(const Desktop& desktop);

    void setConfiguration(ProcessMonitorConfiguration configuration) override;
    void updateBudget(const std::optional<ScreenTimeBudget>& budget) override;
    void startMonitoring() override;
    void stopMonitoring() override;
    void startQuickBlock(const std::set<std::string>& bundleIds, const std::set<std::string>& domains,
        std::int64_t durationMinutes) override;
    void stopQuickBlock() override;

    [[nodiscard]] const std::string& guardianFlexibilityMode() const override
    {
        return m_configuration.guardianFlexibilityMode;
    }

private:
    using Application = std::shared_ptr<RunningApplication>;

    void prepareScreen();
    void check();
    void handleBlockedApp(const Application& application);
    [[nodiscard]] bool isBlockedByIdentifier(const std::string& identifier) const;
    [[nodiscard]] bool mayNotEvenHide(const std::string& identifier, const ProcessBlockEntry* match) const;
    [[nodiscard]] const ProcessBlockEntry* processMatch(const RunningApplication& application) const;
    void stop(const Application& application, bool strict);
    void blockApp(const Application& application, const std::string& displayName, bool isBudgetBlock);
    [[nodiscard]] bool isStrict(const std::string& identifier) const;
    [[nodiscard]] MacBlockVariant variantNow(bool isBudgetBlock) const;
    void blockSite(const std::string& domain, const Application& browser);

    Desktop m_desktop;
    ProcessMonitorConfiguration m_configuration;
    BrowserWatch m_browserWatch;
    BudgetState m_budget;
    QuickBlock m_quickBlock;
    std::map<Application, std::unique_ptr<Timer>> m_quitting; ///< until they are ended, if they don't obey
    std::optional<std::string> m_currentlyBlockingBundleId;   ///< the app whose screen is up; "" for one without

    std::unique_ptr<Timer> m_preparation; ///< of the block screen; there once it was needed
    std::unique_ptr<Timer> m_pollTimer;
    std::unique_ptr<Observation> m_launches;
    std::unique_ptr<Observation> m_activations;
};

} // namespace stillgate
