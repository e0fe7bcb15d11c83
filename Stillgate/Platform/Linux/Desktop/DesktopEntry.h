#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace stillgate
{

/// What a desktop entry says of its app (Desktop Entry Specification).
struct DesktopEntry
{
    std::string desktopId;
    std::string bundleIdentifier;
    std::string name;
    std::string icon; ///< as `ApplicationDescription::icon`
    std::string windowClass;
    std::string executable; ///< name of the file that it runs; empty if that one runs many apps
    bool isShown = true;    ///< in the menu of the present desktop
    bool isPartOfDesktop = false;
    std::size_t commandLength = 0;
    std::size_t folder = 0; ///< which of the data folders it is from
};

/// The entry in a file. Nothing for one whose program isn't there, or runs in the window of a terminal.
[[nodiscard]] std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& file, const std::string& id);

} // namespace stillgate
