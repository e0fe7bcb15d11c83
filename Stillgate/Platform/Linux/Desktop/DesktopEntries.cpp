#include "Platform/Linux/Desktop/DesktopEntries.h"

#include "Platform/Linux/Desktop/DesktopId.h"
#include "Platform/Linux/Desktop/KnownApps.h"

#include <algorithm>
#include <glib.h>
#include <tuple>
#include <unordered_set>

namespace stillgate
{

namespace
{

namespace fs = std::filesystem;

/// The id that a file in a folder of entries has: "kde-okular.desktop" for "kde/okular.desktop".
std::string desktopIdOf(const fs::path& relativePath)
{
    auto id = relativePath.string();
    std::ranges::replace(id, '/', '-');
    return id.substr(0, id.size() - relativePath.extension().string().size());
}

fs::file_time_type lastChangeOf(const fs::path& folder)
{
    std::error_code error;
    const auto time = fs::last_write_time(folder, error);
    return error ? fs::file_time_type::min() : time;
}

} // namespace

DesktopEntries::DesktopEntries(std::vector<fs::path> dataFolders)
    : m_dataFolders(std::move(dataFolders))
{}

std::vector<fs::path> DesktopEntries::standardDataFolders()
{
    const fs::path userFolder = g_get_user_data_dir();
    std::vector<fs::path> folders{userFolder, userFolder / "flatpak/exports/share"};
    for (const auto* const* folder = g_get_system_data_dirs(); *folder != nullptr; ++folder)
        folders.emplace_back(*folder);
    folders.emplace_back("/var/lib/flatpak/exports/share");
    folders.emplace_back("/var/lib/snapd/desktop");
    return folders;
}

std::optional<std::string> DesktopEntries::bundleIdentifierFor(const AppHints& hints)
{
    if (const auto* entry = findInPresentEntries([&] { return find(hints); }))
        return entry->bundleIdentifier;
    // A browser that was unpacked into the home folder has no entry, and is that browser all the same.
    for (const auto* hint : {&hints.applicationId, &hints.desktopFile, &hints.windowClass, &hints.executable}) {
        if (isKnownApp(*hint))
            return bundleIdentifierOf(*hint);
    }
    return std::nullopt;
}

std::optional<std::string> DesktopEntries::nameOf(std::string_view bundleIdentifier)
{
    const auto* entry = findInstalled(bundleIdentifier);
    return entry != nullptr ? std::optional{entry->name} : std::nullopt;
}

std::string DesktopEntries::iconOf(std::string_view bundleIdentifier)
{
    const auto* entry = findInstalled(bundleIdentifier);
    return entry != nullptr ? entry->icon : std::string{};
}

std::vector<ApplicationDescription> DesktopEntries::installedApplications()
{
    if (foldersHaveChanged())
        read();
    std::vector<const DesktopEntry*> apps;
    std::unordered_set<std::string> seen;
    for (const auto& entry : m_entries) {
        if (entry.isShown && !entry.isPartOfDesktop && seen.insert(comparableDesktopId(entry.bundleIdentifier)).second)
            apps.push_back(&entry);
    }
    std::ranges::sort(
        apps, {}, [](const auto* app) { return std::pair{app->folder, std::string_view{app->desktopId}}; });
    std::vector<ApplicationDescription> described;
    described.reserve(apps.size());
    for (const auto* app : apps)
        described.emplace_back(app->bundleIdentifier, app->name, app->icon);
    return described;
}

const DesktopEntry* DesktopEntries::findInstalled(std::string_view bundleIdentifier)
{
    const auto key = comparableDesktopId(bundleIdentifier);
    return findInPresentEntries([&]() -> const DesktopEntry* {
        const auto found = m_byBundleIdentifier.find(key);
        return found != m_byBundleIdentifier.end() ? found->second : nullptr;
    });
}

template <class Find>
const DesktopEntry* DesktopEntries::findInPresentEntries(Find find)
{
    if (const auto* found = find())
        return found;
    if (!foldersHaveChanged())
        return nullptr;
    read();
    return find();
}

/// The surest hint first.
const DesktopEntry* DesktopEntries::find(const AppHints& hints) const
{
    const std::pair<const Index*, std::string> ways[] = {
        {&m_byId, hints.applicationId},
        {&m_byId, fs::path{hints.desktopFile}.filename()},
        {&m_byId, fs::path{hints.desktopFile}.stem()},
        {&m_byWindowClass, hints.windowClass},
        {&m_byId, hints.windowClass},
        {&m_byLastComponent, hints.windowClass},
        {&m_byExecutable, hints.executable},
    };
    for (const auto& [index, hint] : ways) {
        if (hint.empty())
            continue;
        if (const auto found = index->find(comparableDesktopId(hint)); found != index->end())
            return found->second;
    }
    return nullptr;
}

bool DesktopEntries::foldersHaveChanged() const
{
    return m_folders.empty() || std::ranges::any_of(m_folders, [](const auto& folder) {
        return lastChangeOf(folder.path) != folder.lastChange;
    });
}

void DesktopEntries::read()
{
    m_folders.clear();
    std::unordered_map<std::string, DesktopEntry> byId;
    for (size_t number = 0; number < m_dataFolders.size(); ++number)
        readFolder(number, byId);

    m_entries.clear();
    for (auto& [id, entry] : byId)
        m_entries.push_back(std::move(entry));
    fillIndexes();
}

void DesktopEntries::readFolder(size_t number, std::unordered_map<std::string, DesktopEntry>& byId)
{
    const auto folder = m_dataFolders[number] / "applications";
    noteFolder(folder);
    std::error_code error;
    fs::recursive_directory_iterator file{folder, fs::directory_options::skip_permission_denied, error};
    for (; !error && file != fs::recursive_directory_iterator{}; file.increment(error)) {
        std::error_code ignored;
        if (file->is_directory(ignored))
            noteFolder(file->path());
        else if (file->path().extension() == ".desktop" && file->is_regular_file(ignored)) {
            auto id = desktopIdOf(file->path().lexically_relative(folder));
            // An id that isn't UTF-8 would make every file and report with it unreadable.
            if (byId.contains(id) || g_utf8_validate(id.c_str(), static_cast<gssize>(id.size()), nullptr) == FALSE)
                continue;
            if (auto entry = readDesktopEntry(file->path(), id)) {
                entry->folder = number;
                byId.emplace(std::move(id), std::move(*entry));
            }
        }
    }
}

/// Before its files are read, so that a change in between is seen as one.
void DesktopEntries::noteFolder(const fs::path& folder)
{
    m_folders.push_back({folder, lastChangeOf(folder)});
}

/// Where several entries have the same value, the app's main one stands for it: the one that is shown and has the
/// shortest command. The others open its settings, or addresses.
void DesktopEntries::fillIndexes()
{
    std::ranges::sort(m_entries, {}, [](const auto& entry) {
        return std::tuple{!entry.isShown, entry.commandLength, std::string_view{entry.desktopId}};
    });
    for (auto* index : {&m_byId, &m_byWindowClass, &m_byLastComponent, &m_byExecutable, &m_byBundleIdentifier})
        index->clear();
    const auto put = [](Index& index, std::string_view key, const DesktopEntry& entry) {
        if (!key.empty())
            index.try_emplace(comparableDesktopId(key), &entry);
    };
    for (const auto& entry : m_entries) {
        put(m_byId, entry.desktopId, entry);
        put(m_byWindowClass, entry.windowClass, entry);
        if (const auto dot = entry.desktopId.rfind('.'); dot != std::string::npos)
            put(m_byLastComponent, std::string_view{entry.desktopId}.substr(dot + 1), entry);
        put(m_byExecutable, entry.executable, entry);
        put(m_byBundleIdentifier, entry.bundleIdentifier, entry);
    }
}

} // namespace stillgate
