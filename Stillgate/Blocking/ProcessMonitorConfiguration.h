#pragma once

#include "Blocking/DomainNames.h"
#include "Models/BlockRules.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace stillgate
{

/// What the process monitor works from. Every bundle identifier and every domain is in lower case.
///
/// A new one is what holds before the first compile.
struct ProcessMonitorConfiguration
{
    /// Apps matched by name; every compile empties the list.
    std::vector<ProcessBlockEntry> blockedProcesses{
        {"Terminal", "Terminal", "terminal"},
        {"iTerm2", "iTerm", "terminal"},
        {"Cursor", "Cursor", "ide"},
        {"Code", "VS Code", "ide"},
        {"Xcode", "Xcode", "ide"},
        {"Android Studio", "Android Studio", "ide"},
        {"Sublime Text", "Sublime Text", "ide"},
        {"WebStorm", "WebStorm", "ide"},
    };
    std::unordered_set<std::string> customBlockedBundleIds;
    std::optional<std::string> activeSession; ///< shown on the block screen
    std::unordered_map<std::string, std::string> bundleIdCategories;
    std::unordered_map<std::string, std::string> bundleIdPolicies; ///< `unblockPolicy`; none for a guardian's app
    DomainSet blockedDomains;                                      ///< for the browser watch
    std::unordered_map<std::string, std::string> domainCategories;
    std::optional<std::string> guardianMessage;
    std::optional<std::string> guardianIllustrationKey;
    std::string guardianFlexibilityMode = flexibleMode; ///< "permanent" makes every block strict

    bool operator==(const ProcessMonitorConfiguration&) const = default;
};

} // namespace stillgate
