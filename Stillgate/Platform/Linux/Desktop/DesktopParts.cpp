#include "Platform/Linux/Desktop/DesktopParts.h"

#include "Platform/Linux/Desktop/DesktopId.h"

#include <algorithm>
#include <ranges>

namespace stillgate
{

namespace
{

/// Of GNOME, KDE, Xfce, MATE, Cinnamon, LXQt and LXDE, and docks of their own; in lower case and in order.
constexpr std::string_view desktopParts[] = {
    "cairo-dock",
    "caja",
    "caja-browser",
    "caja-computer",
    "caja-home",
    "cinnamon",
    "cinnamon-settings",
    "exo-file-manager",
    "exo-mail-reader",
    "exo-terminal-emulator",
    "exo-web-browser",
    "gnome-control-center",
    "kdesystemsettings",
    "lxqt-about",
    "lxqt-config",
    "lxqt-hibernate",
    "lxqt-leave",
    "lxqt-lockscreen",
    "lxqt-logout",
    "lxqt-panel",
    "lxqt-reboot",
    "lxqt-shutdown",
    "lxqt-suspend",
    "mate-panel",
    "matecc",
    "nemo",
    "nemo-autorun-software",
    "net.launchpad.plank",
    "org.gnome.nautilus",
    "org.gnome.settings",
    "org.gnome.shell",
    "org.gnome.shell.extensions",
    "org.kde.dolphin",
    "org.kde.latte-dock",
    "org.kde.plasmashell",
    "panel-desktop-handler",
    "panel-preferences",
    "pcmanfm",
    "pcmanfm-desktop-pref",
    "pcmanfm-qt",
    "pcmanfm-qt-desktop-pref",
    "plank",
    "systemsettings",
    "thunar",
    "thunar-bulk-rename",
    "thunar-settings",
    "tint2",
    "xfce-settings-manager",
    "xfce4-about",
    "xfce4-appfinder",
    "xfce4-file-manager",
    "xfce4-mail-reader",
    "xfce4-run",
    "xfce4-session-logout",
    "xfce4-terminal-emulator",
    "xfce4-web-browser",
};
static_assert(std::ranges::is_sorted(desktopParts));

/// Desktops without one window for all settings have an entry for each: "Keyboard", "Displays".
constexpr std::string_view categoriesOfSettings[] = {"DesktopSettings", "HardwareSettings"};

bool isSettings(std::string_view categories)
{
    return std::ranges::any_of(std::views::split(categories, ';'), [](const auto category) {
        const std::string_view name{category.begin(), category.end()};
        return std::ranges::find(categoriesOfSettings, name) != std::end(categoriesOfSettings);
    });
}

} // namespace

bool isPartOfDesktop(std::string_view desktopId, std::string_view categories)
{
    return std::ranges::binary_search(desktopParts, comparableDesktopId(desktopId)) || isSettings(categories);
}

} // namespace stillgate
