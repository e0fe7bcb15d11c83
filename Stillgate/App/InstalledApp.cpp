#include "App/InstalledApp.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>
#include <set>

namespace stillgate
{

namespace
{

std::vector<InstalledApp> appsOf(const Workspace& workspace)
{
    std::vector<InstalledApp> apps;
    std::set<std::string> seen;
    const auto append = [&](std::vector<ApplicationDescription> described) {
        for (auto& [identifier, name, icon] : described) {
            if (seen.insert(identifier).second)
                apps.emplace_back(std::move(identifier), std::move(name), std::move(icon));
        }
    };
    append(workspace.installedApplications());
    append(workspace.runningApplications());
    return apps;
}

/// An app with what it is sorted by.
struct RankedApp
{
    std::int64_t usage;
    QString name;
    InstalledApp app;
};

/// The text within which, and for which, a case-insensitive search looks.
class Searchable
{
public:
    explicit Searchable(const std::string& text)
        : m_text(QString::fromStdString(text))
        , m_lowered(QLocale().toLower(m_text))
    {}

    [[nodiscard]] bool contains(const Searchable& part) const
    {
        return m_text.contains(part.m_text, Qt::CaseInsensitive) || m_lowered.contains(part.m_lowered);
    }

private:
    QString m_text;
    QString m_lowered; ///< in the language: "I" is "ı" in Turkish
};

} // namespace

std::vector<InstalledApp> scanInstalledApps(const Workspace& workspace, const UsageTracker::AppUsage& usage)
{
    std::vector<RankedApp> ranked;
    for (auto& app : appsOf(workspace)) {
        const auto used = usage.find(app.bundleId);
        ranked.emplace_back(used != usage.end() ? used->second : 0, QString::fromStdString(app.name), std::move(app));
    }
    QCollator collator{QLocale()};
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::sort(ranked, [&](const auto& a, const auto& b) {
        if (a.usage != b.usage)
            return a.usage > b.usage;
        const int names = collator.compare(a.name, b.name);
        return names != 0 ? names < 0 : a.app.bundleId < b.app.bundleId;
    });
    std::vector<InstalledApp> apps;
    for (auto& [seconds, name, app] : ranked)
        apps.push_back(std::move(app));
    return apps;
}

std::vector<InstalledApp> filteredApps(const std::vector<InstalledApp>& apps, const std::string& searchText)
{
    if (searchText.empty())
        return apps;
    const Searchable wanted{searchText};
    std::vector<InstalledApp> found;
    std::ranges::copy_if(apps, std::back_inserter(found), [&](const auto& app) {
        return Searchable{app.name}.contains(wanted) || Searchable{app.bundleId}.contains(wanted);
    });
    return found;
}

} // namespace stillgate
