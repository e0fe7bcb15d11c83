#include "API/Limits.h"

namespace stillgate::server
{

void requireApps(const std::optional<std::map<std::string, std::vector<AppInfo>>>& apps)
{
    std::size_t count = 0;
    for (const auto& [platform, list] : apps.value_or(std::map<std::string, std::vector<AppInfo>>{})) {
        requireText(platform, longestName, "customApps");
        count += list.size();
        for (const auto& app : list) {
            for (const auto& text : {app.bundleId, app.packageName, app.executableName, std::optional{app.name}})
                requireText(text, longestName, "customApps");
        }
    }
    require(count <= mostApps, "customApps: 1000 apps at most");
}

void requireRoom(Database& database, const std::string& table, const std::string& owner, const std::string& id)
{
    if (database.number("SELECT COUNT(*) FROM " + table + " WHERE " + owner + " = ?", id) >= mostRows)
        throw Refusal{409, "There are too many of these already"};
}

} // namespace stillgate::server
