#include "Platform/Linux/Desktop/DesktopEntry.h"

#include "Platform/Linux/Desktop/DesktopParts.h"
#include "Platform/Linux/Desktop/KnownApps.h"

#include <algorithm>
#include <gio/gdesktopappinfo.h>
#include <memory>

namespace stillgate
{

namespace
{

namespace fs = std::filesystem;

struct Unreference
{
    void operator()(GDesktopAppInfo* info) const { g_object_unref(info); }
};

struct Free
{
    void operator()(char* text) const { g_free(text); }
};

struct FreeStrings
{
    void operator()(char** strings) const { g_strfreev(strings); }
};

using AppInfo = std::unique_ptr<GDesktopAppInfo, Unreference>;
using OwnedText = std::unique_ptr<char, Free>;

/// They run programs of many apps; which one, the name of the executable doesn't tell.
constexpr std::string_view runners[] = {"bash", "dash", "electron", "flatpak", "java", "mono", "node", "perl",
    "python3", "ruby", "sh", "snap", "wine", "xdg-open"};

std::string textOrEmpty(const char* text)
{
    return text != nullptr ? text : "";
}

/// In the user's language; an entry without a name is called as its file is.
std::string nameIn(const AppInfo& info, const std::string& desktopId)
{
    const OwnedText name{g_desktop_app_info_get_locale_string(info.get(), G_KEY_FILE_DESKTOP_KEY_NAME)};
    return name && *name != '\0' ? name.get() : desktopId;
}

/// A path stays one; a name in a theme loses the ".png" that many entries give it by mistake.
std::string iconIn(const AppInfo& info)
{
    auto* icon = g_app_info_get_icon(G_APP_INFO(info.get()));
    if (icon == nullptr)
        return {};
    if (G_IS_FILE_ICON(icon)) {
        const OwnedText path{g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon)))};
        return textOrEmpty(path.get());
    }
    return textOrEmpty(*g_themed_icon_get_names(G_THEMED_ICON(icon)));
}

/// Whether the menu of the present desktop has it.
bool isInMenu(const AppInfo& info)
{
    return g_desktop_app_info_get_is_hidden(info.get()) == FALSE &&
        g_app_info_should_show(G_APP_INFO(info.get())) != FALSE;
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

} // namespace

std::optional<DesktopEntry> readDesktopEntry(const fs::path& file, const std::string& id)
{
    const AppInfo info{g_desktop_app_info_new_from_filename(file.c_str())};
    if (info == nullptr)
        return std::nullopt;
    if (g_desktop_app_info_get_boolean(info.get(), "Terminal") != FALSE)
        return std::nullopt; // runs in the window of another app
    const auto commandLine = textOrEmpty(g_app_info_get_commandline(G_APP_INFO(info.get())));
    return DesktopEntry{
        .desktopId = id,
        .bundleIdentifier = bundleIdentifierOf(id),
        .name = nameIn(info, id),
        .icon = iconIn(info),
        .windowClass = textOrEmpty(g_desktop_app_info_get_startup_wm_class(info.get())),
        .executable = executableOf(commandLine),
        .isShown = isInMenu(info),
        .isPartOfDesktop = isPartOfDesktop(id, textOrEmpty(g_desktop_app_info_get_categories(info.get()))),
        .commandLength = commandLine.size(),
    };
}

} // namespace stillgate
