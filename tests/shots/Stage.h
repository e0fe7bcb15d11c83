#pragma once

#include "App/BlockModalWindowController.h"
#include "App/DeviceAuthorization.h"
#include "App/ManagedWindows.h"
#include "App/Shortcuts.h"
#include "Platform/Memory/MemoryPasteboard.h"
#include "Platform/Memory/MemoryWindowStacking.h"
#include "Platform/Memory/MemoryWorkspace.h"
#include "Views/Windows/QuickWindows.h"
#include "tests/support/AppStateFixture.h"

#include <QQuickWindow>

namespace stillgate
{
class BlockModalViewModel;
}

namespace stillgate::test
{

/// The real windows, over services in memory whose answers and time a scene sets.
class Stage
{
public:
    Stage();

    /// Somebody with a name.
    void signIn();

    /// A window of the application, in the size that it opens with.
    void open(std::string_view windowId);
    void openPopover();
    void openSettings(int tab);
    void openBlockModal(const BlockModal& modal);

    /// The settings of somebody who is signed in.
    void openTab(int tab);

    template <class ViewModel>
    ViewModel& openTab(int tab)
    {
        openTab(tab);
        return tabViewModel<ViewModel>();
    }

    /// Of the block screen that is open.
    [[nodiscard]] static BlockModalViewModel& blockModalViewModel();

    /// Of the settings window's tab that is open.
    template <class ViewModel>
    [[nodiscard]] static ViewModel& tabViewModel()
    {
        return dynamic_cast<ViewModel&>(openTabViewModel());
    }

    /// Unfolds every row of the open tab that can be.
    static void expandAllRows();

    /// The control that says the text of this key.
    static void press(const std::string& key);

    /// What has been opened.
    [[nodiscard]] static QQuickWindow& window();

    class StageBundle final : public Bundle
    {
    public:
        [[nodiscard]] std::filesystem::path path() const override { return folder; }

        [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override
        {
            if (key == "CFBundleShortVersionString")
                return version;
            return key == "STILLGATE_WEB_SITE_URL" ? std::optional{"https://stillgate.example"} : std::nullopt;
        }

        std::filesystem::path folder = STILLGATE_BUNDLE; ///< as built
        std::string version = "1.4.0";
    };

    class StillPreferences final : public DisplayPreferences
    {
    public:
        [[nodiscard]] bool shouldReduceMotion() const override { return true; }

        [[nodiscard]] std::unique_ptr<Observation> onChange(std::function<void()>) override { return nullptr; }
    };

    StageBundle bundle;
    MemoryFileManager files;
    MemoryUserDefaults defaults;
    MemoryHost host;
    MemoryLog log;
    MemoryHostsFileWriter hostsFileWriter{files};
    MemoryWorkspace workspace;
    MemoryWindowStacking stacking;
    ManualTime time;
    NotificationCenter notifications;
    StillPreferences preferences;
    FakeBackend backend;
    HostsFileService hostsFile{hostsFileWriter, files, defaults, host, log};
    RecordingMonitor monitor;
    RecordingTracker tracker;
    RecordingDNSProxy dnsProxy;
    AppState state{{backend, hostsFile, monitor, tracker, dnsProxy, bundle, files, log, notifications, time, defaults}};
    OwnRules ownRules{state, backend, log};
    MemoryPasteboard pasteboard;
    DeviceAuthorization authorization;

private:
    [[nodiscard]] static QObject& openTabViewModel();

    QuickWindows m_windows; // they use all of the above, and go first
    ManagedWindows m_managed{m_windows};
    std::unique_ptr<Popover> m_popover;
    BlockModalWindowController m_blockModal{backend};
};

} // namespace stillgate::test
