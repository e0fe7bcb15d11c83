#pragma once

#include "Platform/Workspace.h"
#include "ScreenTime/UsageTracker.h"

#include <string>
#include <vector>

namespace stillgate
{

/// An app of this machine that a rule can be about.
struct InstalledApp
{
    std::string bundleId;
    std::string name;
    std::string icon; ///< as `ApplicationDescription::icon`

    /// It is the same app, whatever it is called and looks like.
    bool operator==(const InstalledApp& other) const { return bundleId == other.bundleId; }
};

/// The apps of the menu, then those that run and aren't in it, each once. Those that were used most today come first;
/// equal ones are in the order of their names, in the language of the application (QLocale::setDefault).
[[nodiscard]] std::vector<InstalledApp> scanInstalledApps(
    const Workspace& workspace, const UsageTracker::AppUsage& usage);

/// Those whose name or identifier contains the text, in their order; all for an empty one. Case doesn't matter, neither
/// by the rules of that language nor by those of most others: in Turkish too, "instagram" finds "Instagram".
[[nodiscard]] std::vector<InstalledApp> filteredApps(
    const std::vector<InstalledApp>& apps, const std::string& searchText);

} // namespace stillgate
