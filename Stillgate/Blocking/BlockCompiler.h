#pragma once

#include "Blocking/BlockedConfig.h"
#include "Blocking/ProcessMonitorConfiguration.h"
#include "Models/Schedules.h"
#include "Models/ScreenTime.h"
#include "Models/Sharing.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace stillgate
{

/// What is known about the user when blocks are compiled.
struct BlockInputs
{
    const std::vector<BlockRule>& blockRules;
    const std::vector<GuardianBlockRule>& guardianRulesForMe;
    const std::vector<BlockSchedule>& schedules;
    const std::vector<SharingConnection>& sharingConnections;
    const std::optional<ScreenTimeBudget>& budget;
};

/// What is to be enforced, each part by another mechanism.
struct CompiledBlocks
{
    BlockedConfig dnsProxy;
    std::vector<std::string> hostsDomains; ///< no domain twice, in the order of the rules
    ProcessMonitorConfiguration monitor;
    std::optional<ScreenTimeBudget> budget;
};

/// The domains of a category's block list; none for an unknown category.
using CategoryLookup = std::function<std::span<const std::string>(const std::string& category)>;

/// The one place where rules become enforcement. A rule is in force if and only if it is enabled: neither schedules
/// nor excluded domains nor unblock policies are looked at here.
///
/// A guardian's rules reach the monitor only, and their domains only with a category; a guardian's category doesn't
/// pull in its block list.
[[nodiscard]] CompiledBlocks compileBlocks(const BlockInputs& inputs, const CategoryLookup& domainsOfCategory);

} // namespace stillgate
