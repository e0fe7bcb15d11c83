#pragma once

#include "App/AppDelegate.h"
#include "App/Engine.h"
#include "Platform/HostsBlock.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryBrowserScripting.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryHostsFileWriter.h"
#include "Platform/Memory/MemoryLog.h"
#include "Platform/Memory/MemoryPasteboard.h"
#include "Platform/Memory/MemorySystemExtensions.h"
#include "Platform/Memory/MemoryUserDefaults.h"
#include "Platform/Memory/MemoryUserNotifications.h"
#include "Platform/Memory/MemoryWindowStacking.h"
#include "Platform/Memory/MemoryWorkspace.h"
#include "Views/Windows/QuickWindows.h"
#include "tests/server/ServerProcess.h"
#include "tests/support/FakeShell.h"
#include "tests/support/Waiting.h"

#include <QWindow>

namespace stillgate::test
{

/// What is built, under a version of the test's choice.
class BuiltBundle final : public Bundle
{
public:
    [[nodiscard]] std::filesystem::path path() const override { return STILLGATE_BUNDLE; }

    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override
    {
        return key == "CFBundleShortVersionString" ? std::optional{version} : std::nullopt;
    }

    std::string version = "1.4.0";
};

class StillPreferences final : public DisplayPreferences
{
public:
    [[nodiscard]] bool shouldReduceMotion() const override { return true; }

    [[nodiscard]] std::unique_ptr<Observation> onChange(std::function<void()>) override { return nullptr; }
};

/// What stays when the application ends: the disk, the settings, the desktop and the time.
struct Computer
{
    Computer()
    {
        files.put(hostsPath, "127.0.0.1 localhost\n");
        hostsFileWriter.isPermitted = true;
    }

    BuiltBundle bundle;
    MemoryFileManager files;
    MemoryUserDefaults defaults;
    MemoryHost host;
    MemoryLog log;
    ManualTime time;
    MemoryHostsFileWriter hostsFileWriter{files};
    MemoryWorkspace workspace;
    MemoryBrowserScripting browsers;
    MemoryWindowStacking stacking;
    MemorySystemExtensions system;
    MemoryUserNotifications userNotifications;
    MemoryPasteboard pasteboard;
};

/// The computer as an engine sees it, with another desktop than its own if need be.
[[nodiscard]] Machine machineOn(Computer& computer, NotificationCenter& notifications, Workspace& workspace);

/// What makes a client take the server for its backend.
[[nodiscard]] SecureSession::Settings trustIn(const ServerProcess& server);

/// The application as main() puts it together, with real windows and a real backend, on a computer whose time a test
/// moves.
class RunningApplicationProcess
{
public:
    RunningApplicationProcess(Computer& computer, const ServerProcess& server);

    void start() { m_delegate.applicationDidFinishLaunching(); }

    /// The visible window of this title; null if there is none.
    [[nodiscard]] static QWindow* window(const QString& title);

    [[nodiscard]] AppState& state() { return m_engine.state; }

    [[nodiscard]] Engine& engine() { return m_engine; }

    [[nodiscard]] DeviceAuthorization& authorization() { return m_authorization; }

    [[nodiscard]] FakeStatusItem& statusItem() { return m_statusItem; }

private:
    NotificationCenter m_notifications;
    Engine m_engine;
    DeviceAuthorization m_authorization;
    StillPreferences m_preferences;
    FakeStatusItem m_statusItem;
    QuickWindows m_windows;
    AppDelegate m_delegate;
};

} // namespace stillgate::test
