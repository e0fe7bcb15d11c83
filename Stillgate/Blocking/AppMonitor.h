#pragma once

#include "Blocking/ProcessMonitorConfiguration.h"
#include "Models/ScreenTime.h"

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
    virtual void stopMonitoring() = 0;

    /// "permanent", when a guardian wants no way out; of the configuration that holds.
    [[nodiscard]] virtual const std::string& guardianFlexibilityMode() const = 0;

    /// Blocks since launch, of apps and sites.
    [[nodiscard]] virtual std::int64_t blockedAppAttempts() const = 0;
};

} // namespace stillgate
