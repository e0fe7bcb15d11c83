#pragma once

#include "Blocking/ProcessMonitorConfiguration.h"
#include "Blocking/QuickBlockSession.h"
#include "Models/ScreenTime.h"

#include <QProperty>

#include <cstdint>
#include <optional>

namespace stillgate
{

/// Watches the app in front and stops those that the rules forbid.
class AppMonitor
{
public:
    virtual ~AppMonitor() = default;

    /// Replaces the whole configuration; a block screen that is up stays.
    virtual void setConfiguration(ProcessMonitorConfiguration configuration) = 0;
    virtual void updateBudget(const std::optional<ScreenTimeBudget>& budget) = 0;
    /// A second start does nothing.
    virtual void startMonitoring() = 0;
    /// Ends the quick block too.
    virtual void stopMonitoring() = 0;

    /// Blocks these apps and sites beside the rules, in the place of a quick block that runs. The sites are blocked
    /// from now on, the apps while it monitors.
    virtual void startQuickBlock(
        const std::set<std::string>& bundleIds, const std::set<std::string>& domains, std::int64_t durationMinutes) = 0;
    virtual void stopQuickBlock() = 0;

    /// "permanent", when a guardian wants no way out; of the configuration that holds.
    [[nodiscard]] virtual const std::string& guardianFlexibilityMode() const = 0;

    // Screens bind to these; only the monitor sets them.
    QProperty<bool> isMonitoring{false};
    QProperty<std::int64_t> blockedAppAttempts{0}; ///< blocks since launch, of apps and sites
    QProperty<std::optional<QuickBlockSession>> activeQuickBlock;
};

} // namespace stillgate
