#pragma once

#include "Models/Date.h"
#include "Models/Record.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// One app in a rule. The key of the map that holds it says for which platform.
struct AppInfo
{
    std::optional<std::string> bundleId;
    std::optional<std::string> packageName;
    std::optional<std::string> executableName;
    std::string name;

    STILLGATE_RECORD(AppInfo, bundleId, packageName, executableName, name);
};

/// Apps by platform key. This client reads and writes the key of `ownPlatform` alone.
using AppsByPlatform = std::map<std::string, std::vector<AppInfo>>;

inline constexpr auto ownPlatform = "macos";

/// How strict a block is, in `unblockPolicy` and `flexibilityMode` alike. Enforcement looks at "permanent" alone.
inline constexpr auto permanentMode = "permanent";
inline constexpr auto flexibleMode = "flexible";

/// A rule that the user owns. It is in force if and only if it is enabled.
struct BlockRule
{
    std::string id;
    std::optional<std::string> userId;
    std::optional<std::string> category; ///< "social_media", "gaming", "streaming", "gambling", "shopping", "adult",
                                         ///< "news", "custom"; unknown ones are carried along
    std::optional<std::string> customName;
    bool enabled = false;
    std::vector<std::string> customDomains;
    std::vector<std::string> excludedDomains;
    std::optional<AppsByPlatform> customApps;
    std::string unblockPolicy; ///< "flexible", "permanent", "cooldown", "timed", "group_approval"
    std::optional<std::int64_t> cooldownHours;
    std::optional<Date> createdAt;
    std::optional<Date> updatedAt;

    /// The category in words; the rule's own name for a custom rule.
    [[nodiscard]] std::string categoryDisplayName() const;

    STILLGATE_RECORD(BlockRule, id, userId, category, customName, enabled, customDomains, excludedDomains, customApps,
        unblockPolicy, cooldownHours, createdAt, updatedAt);
};

/// A rule that a guardian set on a controlled user.
struct GuardianBlockRule
{
    std::string id;
    std::string connectionId;
    std::string controllerUserId;
    std::string controlledUserId;
    std::optional<std::string> category;
    std::optional<std::string> customName;
    bool enabled = false;
    std::optional<std::vector<std::string>> customDomains;
    std::optional<AppsByPlatform> customApps;
    std::optional<Date> createdAt;
    std::optional<Date> updatedAt;

    STILLGATE_RECORD(GuardianBlockRule, id, connectionId, controllerUserId, controlledUserId, category, customName,
        enabled, customDomains, customApps, createdAt, updatedAt);
};

/// An entry of the merged rule set that the server computes for the signed-in user.
struct EffectiveRule
{
    std::string id;
    std::string userId;
    std::optional<std::string> category;
    std::optional<std::string> customName;
    bool enabled = false;
    std::optional<std::vector<std::string>> customDomains;
    std::optional<AppsByPlatform> customApps;
    std::string _source; ///< "guardian" for a guardian's rule
    std::optional<std::string> _connectionId;

    STILLGATE_RECORD(
        EffectiveRule, id, userId, category, customName, enabled, customDomains, customApps, _source, _connectionId);
};

struct GuardianConnectionInfo
{
    std::string id;
    std::string flexibilityMode;
    std::optional<std::string> customBlockMessage;
    std::optional<std::string> blockIllustrationKey;

    STILLGATE_RECORD(GuardianConnectionInfo, id, flexibilityMode, customBlockMessage, blockIllustrationKey);
};

struct EffectiveRulesResponse
{
    std::vector<EffectiveRule> rules;
    std::vector<GuardianConnectionInfo> guardianConnections;

    STILLGATE_RECORD(EffectiveRulesResponse, rules, guardianConnections);
};

/// The guardian's rules of a merged rule set, in its order.
[[nodiscard]] std::vector<GuardianBlockRule> guardianRules(const EffectiveRulesResponse& response);

struct CreateGuardianRuleBody
{
    std::optional<std::string> category;
    std::optional<std::string> customName;
    bool enabled = false;
    std::vector<std::string> customDomains;
    AppsByPlatform customApps;

    STILLGATE_RECORD(CreateGuardianRuleBody, category, customName, enabled, customDomains, customApps);
};

/// A partial update: what is none stays as it is.
struct UpdateGuardianRuleBody
{
    std::optional<bool> enabled;
    std::optional<std::vector<std::string>> customDomains;
    std::optional<AppsByPlatform> customApps;
    std::optional<std::string> customName;

    STILLGATE_RECORD(UpdateGuardianRuleBody, enabled, customDomains, customApps, customName);
};

/// One process that the process monitor blocks by name.
struct ProcessBlockEntry
{
    std::string processName;
    std::string displayName;
    std::string category;

    STILLGATE_RECORD(ProcessBlockEntry, processName, displayName, category);
};

} // namespace stillgate
