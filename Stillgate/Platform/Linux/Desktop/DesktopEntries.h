#pragma once

#include "Platform/Linux/Desktop/DesktopEntry.h"
#include "Platform/Workspace.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace stillgate
{

/// What a window says about the app that it belongs to; empty where it says nothing. Each program says what it likes.
struct AppHints
{
    std::string applicationId; ///< id of a desktop entry, from the toolkit
    std::string desktopFile;   ///< the same, or the path of one
    std::string windowClass;   ///< the class of WM_CLASS, or the Wayland app id
    std::string executable;    ///< name of the file that its process runs
};

/// The apps that are installed, by their desktop entries: packages, flatpaks, snaps and the user's own.
///
/// Read when first asked for, and again when something isn't found and a folder has changed since. Main thread only.
class DesktopEntries
{
public:
    /// The folders of data that have entries in "applications"; an entry hides those of its id in later folders.
    explicit DesktopEntries(std::vector<std::filesystem::path> dataFolders);

    /// Those of this system and user. XDG_DATA_DIRS may lack the flatpaks and snaps, and they are there all the same.
    [[nodiscard]] static std::vector<std::filesystem::path> standardDataFolders();

    /// Which app it is, on every computer of the account; nothing if it is neither installed nor well known.
    [[nodiscard]] std::optional<std::string> bundleIdentifierFor(const AppHints& hints);

    /// The installed app's name in the user's language.
    [[nodiscard]] std::optional<std::string> nameOf(std::string_view bundleIdentifier);

    /// As `ApplicationDescription::icon`; empty also for an app that isn't installed.
    [[nodiscard]] std::string iconOf(std::string_view bundleIdentifier);

    /// The apps in the menu of the present desktop, as `Workspace::installedApplications`. One that a later folder or
    /// another entry has too is what `nameOf` tells of it, unless that entry isn't in the menu.
    [[nodiscard]] std::vector<ApplicationDescription> installedApplications();

private:
    using Index = std::unordered_map<std::string, const DesktopEntry*>;

    struct Folder
    {
        std::filesystem::path path;
        std::filesystem::file_time_type lastChange;
    };

    template <class Find>
    const DesktopEntry* findInPresentEntries(Find find);

    [[nodiscard]] const DesktopEntry* find(const AppHints& hints) const;
    [[nodiscard]] const DesktopEntry* findInstalled(std::string_view bundleIdentifier);
    [[nodiscard]] bool foldersHaveChanged() const;
    void read();
    void readFolder(size_t number, std::unordered_map<std::string, DesktopEntry>& byId);
    void noteFolder(const std::filesystem::path& folder);
    void fillIndexes();

    std::vector<std::filesystem::path> m_dataFolders;
    std::vector<Folder> m_folders; ///< as they were when they were read
    std::vector<DesktopEntry> m_entries;
    Index m_byId;
    Index m_byWindowClass;
    Index m_byLastComponent; ///< "mousepad" for "org.xfce.mousepad"
    Index m_byExecutable;
    Index m_byBundleIdentifier;
};

} // namespace stillgate
