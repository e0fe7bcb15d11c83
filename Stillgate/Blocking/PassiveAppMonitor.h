#pragma once

#include "Blocking/AppMonitor.h"
#include "Blocking/Budget.h"

namespace stillgate
{

/// Keeps what it would have to enforce and watches nothing: until there is a process monitor.
class PassiveAppMonitor final : public AppMonitor
{
public:
    void setConfiguration(ProcessMonitorConfiguration configuration) override
    {
        m_configuration = std::move(configuration);
    }

    void updateBudget(const std::optional<ScreenTimeBudget>& budget) override { m_budget = budgetState(budget); }

    void startMonitoring() override {}

    void stopMonitoring() override {}

    [[nodiscard]] const std::string& guardianFlexibilityMode() const override
    {
        return m_configuration.guardianFlexibilityMode;
    }

    [[nodiscard]] std::int64_t blockedAppAttempts() const override { return 0; }

    [[nodiscard]] const ProcessMonitorConfiguration& configuration() const { return m_configuration; }

    [[nodiscard]] const BudgetState& budget() const { return m_budget; }

private:
    ProcessMonitorConfiguration m_configuration;
    BudgetState m_budget;
};

} // namespace stillgate
