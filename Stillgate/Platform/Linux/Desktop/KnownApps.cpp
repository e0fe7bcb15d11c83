#include "Platform/Linux/Desktop/KnownApps.h"

#include "Platform/Linux/Desktop/DesktopId.h"

#include <algorithm>
#include <iterator>

namespace stillgate
{

namespace
{

struct KnownApp
{
    std::string_view desktopId; ///< in lower case
    std::string_view bundleIdentifier;
};

/// In the order of their ids. Reverse-DNS ids are those of flatpaks or of the makers, the others those of packages.
constexpr KnownApp knownApps[] = {
    {"alacritty", "com.apple.Terminal"},
    {"android-studio", "com.google.android.studio"},
    {"brave", "com.brave.Browser"},
    {"brave-browser", "com.brave.Browser"},
    {"chromium", "org.chromium.Chromium"},
    {"chromium-browser", "org.chromium.Chromium"},
    {"code", "com.microsoft.VSCode"},
    {"com.brave.browser", "com.brave.Browser"},
    {"com.discordapp.discord", "com.hnc.Discord"},
    {"com.gexperts.tilix", "com.apple.Terminal"},
    {"com.google.androidstudio", "com.google.android.studio"},
    {"com.google.chrome", "com.google.Chrome"},
    {"com.jetbrains.intellij-idea-community", "com.jetbrains.intellij"},
    {"com.jetbrains.intellij-idea-ultimate", "com.jetbrains.intellij"},
    {"com.jetbrains.pycharm-community", "com.jetbrains.pycharm"},
    {"com.jetbrains.pycharm-professional", "com.jetbrains.pycharm"},
    {"com.microsoft.edge", "com.microsoft.edgemac"},
    {"com.mitchellh.ghostty", "com.apple.Terminal"},
    {"com.mojang.minecraft", "com.mojang.minecraftlauncher"},
    {"com.obsproject.studio", "com.obsproject.obs-studio"},
    {"com.opera.opera", "com.operasoftware.Opera"},
    {"com.raggesilver.blackbox", "com.apple.Terminal"},
    {"com.rtosta.zapzap", "net.whatsapp.WhatsApp"},
    {"com.slack.slack", "com.tinyspeck.slackmacgap"},
    {"com.spotify.client", "com.spotify.client"},
    {"com.sublimetext.three", "com.sublimetext.4"},
    {"com.valvesoftware.steam", "com.valvesoftware.steam"},
    {"com.visualstudio.code", "com.microsoft.VSCode"},
    {"com.vivaldi.vivaldi", "com.vivaldi.Vivaldi"},
    {"debian-uxterm", "com.apple.Terminal"},
    {"debian-xterm", "com.apple.Terminal"},
    {"discord", "com.hnc.Discord"},
    {"firefox", "org.mozilla.firefox"},
    {"firefox-esr", "org.mozilla.firefox"},
    {"foot", "com.apple.Terminal"},
    {"footclient", "com.apple.Terminal"},
    {"gnome-control-center", "com.apple.systempreferences"},
    {"gnome-terminal", "com.apple.Terminal"},
    {"google-chrome", "com.google.Chrome"},
    {"jetbrains-idea", "com.jetbrains.intellij"},
    {"jetbrains-pycharm", "com.jetbrains.pycharm"},
    {"kitty", "com.apple.Terminal"},
    {"lxterminal", "com.apple.Terminal"},
    {"mate-terminal", "com.apple.Terminal"},
    {"md.obsidian.obsidian", "md.obsidian"},
    {"microsoft-edge", "com.microsoft.edgemac"},
    {"minecraft-launcher", "com.mojang.minecraftlauncher"},
    {"nemo", "com.apple.finder"},
    {"obsidian", "md.obsidian"},
    {"opera", "com.operasoftware.Opera"},
    {"org.chromium.chromium", "org.chromium.Chromium"},
    {"org.codeberg.dnkl.foot", "com.apple.Terminal"},
    {"org.gnome.console", "com.apple.Terminal"},
    {"org.gnome.nautilus", "com.apple.finder"},
    {"org.gnome.ptyxis", "com.apple.Terminal"},
    {"org.gnome.settings", "com.apple.systempreferences"},
    {"org.gnome.terminal", "com.apple.Terminal"},
    {"org.kde.dolphin", "com.apple.finder"},
    {"org.kde.konsole", "com.apple.Terminal"},
    {"org.kde.yakuake", "com.apple.Terminal"},
    {"org.mozilla.firefox", "org.mozilla.firefox"},
    {"org.mozilla.thunderbird", "org.mozilla.thunderbird"},
    {"org.signal.signal", "org.whispersystems.signal-desktop"},
    {"org.telegram.desktop", "org.telegram.desktop"},
    {"org.videolan.vlc", "org.videolan.vlc"},
    {"org.vinegarhq.sober", "com.roblox.RobloxPlayer"},
    {"org.wezfurlong.wezterm", "com.apple.Terminal"},
    {"pcmanfm", "com.apple.finder"},
    {"pcmanfm-qt", "com.apple.finder"},
    {"qterminal", "com.apple.Terminal"},
    {"signal-desktop", "org.whispersystems.signal-desktop"},
    {"slack", "com.tinyspeck.slackmacgap"},
    {"spotify", "com.spotify.client"},
    {"st", "com.apple.Terminal"},
    {"steam", "com.valvesoftware.steam"},
    {"sublime_text", "com.sublimetext.4"},
    {"systemsettings", "com.apple.systempreferences"},
    {"teams-for-linux", "com.microsoft.teams2"},
    {"telegram-desktop", "org.telegram.desktop"},
    {"telegramdesktop", "org.telegram.desktop"},
    {"terminator", "com.apple.Terminal"},
    {"thunar", "com.apple.finder"},
    {"thunderbird", "org.mozilla.thunderbird"},
    {"urxvt", "com.apple.Terminal"},
    {"us.zoom.zoom", "us.zoom.xos"},
    {"vivaldi-stable", "com.vivaldi.Vivaldi"},
    {"vlc", "org.videolan.vlc"},
    {"xfce4-terminal", "com.apple.Terminal"},
    {"xfce4-terminal-emulator", "com.apple.Terminal"},
    {"xterm", "com.apple.Terminal"},
    {"zoom", "us.zoom.xos"},
};
static_assert(std::ranges::is_sorted(knownApps, {}, &KnownApp::desktopId));

const KnownApp* find(std::string_view lowerCaseId)
{
    const auto* found = std::ranges::lower_bound(knownApps, lowerCaseId, {}, &KnownApp::desktopId);
    return found != std::end(knownApps) && found->desktopId == lowerCaseId ? found : nullptr;
}

/// The app's name in the id of a snap's entry, "name_name": the snap, and its command of the same name.
std::string_view nameInSnapId(std::string_view id)
{
    const auto half = id.size() / 2;
    const bool isDoubled = id.size() % 2 == 1 && id[half] == '_' && id.substr(0, half) == id.substr(half + 1);
    return isDoubled ? id.substr(0, half) : std::string_view{};
}

const KnownApp* findByDesktopId(std::string_view desktopId)
{
    const auto id = comparableDesktopId(desktopId);
    const auto* known = find(id);
    return known != nullptr ? known : find(nameInSnapId(id));
}

} // namespace

std::string bundleIdentifierOf(std::string_view desktopId)
{
    const auto* known = findByDesktopId(desktopId);
    return std::string{known != nullptr ? known->bundleIdentifier : desktopId};
}

bool isKnownApp(std::string_view desktopId)
{
    return findByDesktopId(desktopId) != nullptr;
}

} // namespace stillgate
