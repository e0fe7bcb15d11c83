#include "Platform/Linux/Desktop/DesktopEntries.h"

#include "Platform/Linux/Desktop/DesktopId.h"
#include "Platform/Linux/Desktop/KnownApps.h"

#include <algorithm>
#include <gio/gdesktopappinfo.h>
#include <memory>
#include <tuple>

namespace stillgate
{

namespace
{

namespace fs = std::filesystem;

struct Unreference
{
    void operator()(GDesktopAppInfo* info) const { g_object_unref(info); }
};

struct FreeStrings
{
    void operator()(char** strings) const { g_strfreev(strings); }
};

/// They run programs of many apps; which one, the name of the executable doesn't tell.
constexpr std::string_view runners[] = {"bash", "dash", "electron", "flatpak", "java", "mono", "node", "perl",
    "python3", "ruby", "sh", "snap", "wine", "xdg-open"};

std::string textOrEmpty(const char* text)
{
    return text != nullptr ? text : "";
}

/// The program that a command line runs: "firefox" for "env LANG=C /usr/bin/firefox %u".
std::string executableOf(const std::string& commandLine)
{
    char** parsed = nullptr;
    if (!g_shell_parse_argv(commandLine.c_str(), nullptr, &parsed, nullptr))
        return {};
    const std::unique_ptr<char*, FreeStrings> arguments{parsed};
    for (char** argument = parsed; *argument != nullptr; ++argument) {
        const auto name = fs::path{*argument}.filename().string();
        if (name == "env" || std::string_view{*argument}.contains('='))
            continue;
        const bool isRunner = std::ranges::find(runners, name) != std::end(runners);
        return isRunner ? std::string{} : name;
    }
    return {};
}

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
    const auto key = comparableDesktopId(bundleIdentifier);
    const auto* entry = findInPresentEntries([&]() -> const Entry* {
        const auto found = m_byBundleIdentifier.find(key);
        return found != m_byBundleIdentifier.end() ? found->second : nullptr;
    });
    return entry != nullptr ? std::optional{entry->name} : std::nullopt;
}

template <class Find>
const DesktopEntries::Entry* DesktopEntries::findInPresentEntries(Find find)
{
    if (const auto* found = find())
        return found;
    if (!foldersHaveChanged())
        return nullptr;
    read();
    return find();
}

/// The surest hint first.
const DesktopEntries::Entry* DesktopEntries::find(const AppHints& hints) const
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
    std::unordered_map<std::string, Entry> byId;
    for (const auto& folder : m_dataFolders)
        readFolder(folder / "applications", byId);

    m_entries.clear();
    for (auto& [id, entry] : byId)
        m_entries.push_back(std::move(entry));
    fillIndexes();
}

void DesktopEntries::readFolder(const fs::path& folder, std::unordered_map<std::string, Entry>& byId)
{
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
            if (auto entry = readEntry(file->path(), id))
                byId.emplace(std::move(id), std::move(*entry));
        }
    }
}

/// Before its files are read, so that a change in between is seen as one.
void DesktopEntries::noteFolder(const fs::path& folder)
{
    m_folders.push_back({folder, lastChangeOf(folder)});
}

std::optional<DesktopEntries::Entry> DesktopEntries::readEntry(const fs::path& file, std::string id)
{
    const std::unique_ptr<GDesktopAppInfo, Unreference> info{g_desktop_app_info_new_from_filename(file.c_str())};
    if (info == nullptr)
        return std::nullopt;
    if (g_desktop_app_info_get_boolean(info.get(), "Terminal") != FALSE)
        return std::nullopt; // runs in the window of another app
    auto* app = G_APP_INFO(info.get());
    const auto commandLine = textOrEmpty(g_app_info_get_commandline(app));
    return Entry{
        .desktopId = id,
        .bundleIdentifier = bundleIdentifierOf(id),
        .name = textOrEmpty(g_app_info_get_name(app)),
        .windowClass = textOrEmpty(g_desktop_app_info_get_startup_wm_class(info.get())),
        .executable = executableOf(commandLine),
        .isShown = g_desktop_app_info_get_nodisplay(info.get()) == FALSE &&
            g_desktop_app_info_get_is_hidden(info.get()) == FALSE,
        .commandLength = commandLine.size(),
    };
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
    const auto put = [](Index& index, std::string_view key, const Entry& entry) {
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
