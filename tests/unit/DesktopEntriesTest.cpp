#include "Platform/Linux/Desktop/DesktopEntries.h"

#include "Platform/Linux/Desktop/KnownApps.h"
#include "tests/support/Matchers.h"
#include "tests/support/TemporaryFolder.h"

#include <QByteArray>

namespace stillgate
{

using namespace test;

/// A user's folder of entries, before the system's.
class InstalledApps : public testing::Test
{
protected:
    /// An entry counts only if its program is there.
    void SetUp() override
    {
        for (const auto* program : {"editor", "env", "firefox-esr", "code", "c", "python3", "pager", "viewer", "app"}) {
            putFile(programs() / program, "");
            std::filesystem::permissions(programs() / program, std::filesystem::perms::all);
        }
        ::qputenv("PATH", programs().c_str());
    }

    void TearDown() override { ::qputenv("PATH", m_path); }

    std::filesystem::path programs() { return m_folder.path() / "programs"; }

    void put(const std::string& folder, const std::string& id, const std::string& lines)
    {
        putFile(m_folder.path() / folder / "applications" / (id + ".desktop"),
            "[Desktop Entry]\nType=Application\nName=" + id + "\n" + lines + "\n");
    }

    std::string identify(const AppHints& hints) { return m_entries.bundleIdentifierFor(hints).value_or("none"); }

    QByteArray m_path = ::qgetenv("PATH");
    TemporaryFolder m_folder;
    DesktopEntries m_entries{{m_folder.path() / "user", m_folder.path() / "missing", m_folder.path() / "system"}};
};

TEST(KnownApps, haveOneIdentifierWhereverTheyComeFrom)
{
    const std::pair<const char*, const char*> cases[] = {
        {"firefox-esr", "org.mozilla.firefox"},
        {"Zoom", "us.zoom.xos"},
        {"vlc_vlc", "org.videolan.vlc"},
        {"sublime_text", "com.sublimetext.4"},
        {"org.gnome.Mines", "org.gnome.Mines"},
        {"Foo_foo", "Foo_foo"},
        {"_", "_"},
        {"", ""},
    };
    for (const auto& [desktopId, identifier] : cases)
        EXPECT_EQ(bundleIdentifierOf(desktopId), identifier);
}

TEST_F(InstalledApps, areFoundByTheSurestHintOfAWindow)
{
    put("system", "org.example.Editor", "Exec=editor %U\nStartupWMClass=the-editor");
    put("system", "org.example.Editor-settings", "Exec=editor --settings");
    put("system", "firefox-esr", "Exec=env MOZ=1 " + (programs() / "firefox-esr").string() + " %u");
    put("system", "code", "Exec=code %F\nStartupWMClass=Code");
    put("system", "code-url-handler", "Exec=c %U\nStartupWMClass=Code\nNoDisplay=true");
    put("system", "script", "Exec=python3 /usr/share/script/main.py");
    put("system", "pager", "Exec=pager\nTerminal=true");
    put("system", "kde/viewer", "Exec=viewer");
    put("system", "broken", "Exec='");
    put("system", "removed", "Exec=removed");

    const std::pair<AppHints, const char*> cases[] = {
        {{.applicationId = "org.example.Editor", .windowClass = "Code"}, "org.example.Editor"},
        {{.applicationId = "not.installed", .windowClass = "Code"}, "com.microsoft.VSCode"},
        {{.desktopFile = "org.example.editor"}, "org.example.Editor"},
        {{.desktopFile = "/usr/share/applications/code.desktop"}, "com.microsoft.VSCode"},
        {{.windowClass = "The-Editor"}, "org.example.Editor"},
        {{.windowClass = "code"}, "com.microsoft.VSCode"},
        {{.windowClass = "Firefox-ESR"}, "org.mozilla.firefox"},
        {{.windowClass = "Editor"}, "org.example.Editor"},
        {{.windowClass = "kde-viewer"}, "kde-viewer"},
        {{.windowClass = "Other", .executable = "editor"}, "org.example.Editor"},
        {{.executable = "firefox-esr"}, "org.mozilla.firefox"},
        {{.executable = "python3"}, "none"},
        {{.executable = "pager"}, "none"},
        {{.executable = "removed"}, "none"},
        {{.windowClass = "Google-chrome"}, "com.google.Chrome"}, // not installed, and yet no other app
        {{.windowClass = std::string(1'000'000, '/')}, "none"},
        {{}, "none"},
    };
    for (const auto& [hints, identifier] : cases)
        EXPECT_EQ(identify(hints), identifier)
            << hints.applicationId << ' ' << hints.desktopFile << ' ' << hints.windowClass << ' ' << hints.executable;
}

TEST_F(InstalledApps, ofTheUserHideThoseOfTheSystem)
{
    put("system", "game", "Exec=app\nStartupWMClass=system-game");
    put("user", "game", "Exec=app\nStartupWMClass=user-game");
    EXPECT_EQ(identify({.windowClass = "user-game"}), "game");
    EXPECT_EQ(identify({.windowClass = "system-game"}), "none");
}

TEST_F(InstalledApps, haveNamesInTheUsersLanguage)
{
    ::qputenv("LANGUAGE", "tr");
    put("system", "org.example.Notes", "Exec=app\nName[tr]=Notlar");
    put("system", "chromium-browser", "Exec=app");
    EXPECT_EQ(m_entries.nameOf("org.example.notes"), "Notlar");
    EXPECT_EQ(m_entries.nameOf("org.chromium.Chromium"), "chromium-browser");
    EXPECT_EQ(m_entries.nameOf("com.apple.Terminal"), std::nullopt);
    ::qunsetenv("LANGUAGE");
}

TEST_F(InstalledApps, ofTheMenuAreListed)
{
    put("system", "org.example.Editor", "Exec=editor\nIcon=editor.png");
    put("user", "viewer", "Exec=viewer\nIcon=/opt/viewer/icon.png");
    put("user", "game", "Exec=app");
    put("system", "game", "Exec=app\nIcon=game");
    put("system", "firefox", "Exec=firefox-esr %u\nIcon=firefox");
    put("user", "firefox-esr", "Exec=firefox-esr --new-window %u");
    put("system", "code", "Exec=code\nNoDisplay=true");
    put("user", "deleted", "Hidden=true");
    put("system", "deleted", "Exec=app");
    put("system", "pager", "Exec=pager\nTerminal=true");
    put("system", "removed", "Exec=app\nTryExec=removed");
    put("system", "of-another-desktop", "Exec=app\nOnlyShowIn=Nowhere;");
    put("system", "Thunar", "Exec=app\nIcon=folder");
    put("system", "keyboard", "Exec=app\nCategories=Settings;DesktopSettings;");
    putFile(m_folder.path() / "system/applications/nameless.desktop",
        "[Desktop Entry]\nType=Application\nExec=app\nName=\xff\n");

    EXPECT_THAT(m_entries.installedApplications(),
        ElementsAre(ApplicationDescription{"game", "game", ""},
            ApplicationDescription{"viewer", "viewer", "/opt/viewer/icon.png"},
            ApplicationDescription{"org.mozilla.firefox", "firefox", "firefox"},
            ApplicationDescription{"nameless", "nameless", ""},
            ApplicationDescription{"org.example.Editor", "org.example.Editor", "editor"}));
    EXPECT_EQ(m_entries.nameOf("org.mozilla.firefox"), "firefox");
    EXPECT_EQ(m_entries.nameOf("com.apple.finder"), "Thunar") << "it may run";
    EXPECT_EQ(m_entries.iconOf("com.apple.finder"), "folder");
    EXPECT_EQ(m_entries.iconOf("not.installed"), "");
}

TEST_F(InstalledApps, areThoseThatThereAreNow)
{
    const auto folder = m_folder.path() / "user/applications";
    EXPECT_EQ(identify({.windowClass = "game"}), "none");
    put("user", "game", "Exec=app");
    EXPECT_EQ(identify({.windowClass = "game"}), "game");

    put("user", "tool", "Exec=app");
    std::filesystem::last_write_time(folder, std::filesystem::file_time_type::clock::now() + std::chrono::hours{1});
    EXPECT_THAT(m_entries.installedApplications(), SizeIs(2));
    EXPECT_EQ(m_entries.nameOf("tool"), "tool");
    std::filesystem::remove_all(folder);
    EXPECT_THAT(m_entries.installedApplications(), IsEmpty());
}

} // namespace stillgate
