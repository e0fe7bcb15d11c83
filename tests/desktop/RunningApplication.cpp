#include "tests/desktop/RunningApplication.h"

#include "Platform/Linux/Desktop/DesktopEntries.h"

#include <QGuiApplication>
#include <nlohmann/json.hpp>

namespace stillgate::test
{

SecureSession::Settings trustIn(const ServerProcess& server)
{
    const auto deployment = nlohmann::json::parse(fileBytes(server.folder() / "deployment.json"));
    return {.pinnedHashes = deployment.at("pins"), .extraAnchor = deployment.at("trustAnchor").get<std::string>()};
}

Machine machineOn(Computer& computer, NotificationCenter& notifications, Workspace& workspace)
{
    return {.bundle = computer.bundle,
        .files = computer.files,
        .log = computer.log,
        .notifications = notifications,
        .clock = computer.time,
        .scheduler = computer.time,
        .defaults = computer.defaults,
        .host = computer.host,
        .hostsFileWriter = computer.hostsFileWriter,
        .workspace = workspace,
        .browsers = computer.browsers,
        .systemExtensions = computer.system,
        .dnsProxyPreferences = computer.system,
        .userNotifications = computer.userNotifications};
}

RunningApplicationProcess::RunningApplicationProcess(Computer& computer, const ServerProcess& server)
    : m_engine{.machine = machineOn(computer, m_notifications, computer.workspace),
          .baseURL = server.baseURL(),
          .trust = trustIn(server)}
    , m_authorization(
          m_engine.state, m_engine.backend, [&computer](const std::string& url) { computer.workspace.open(url); },
          computer.time, computer.time, computer.log)
    , m_windows({
          .state = m_engine.state,
          .deviceAuthorization = m_authorization,
          .ownRules = m_engine.ownRules,
          .backend = m_engine.backend,
          .monitor = m_engine.monitor,
          .tracker = m_engine.tracker,
          .workspace = computer.workspace,
          .bundle = computer.bundle,
          .notifications = m_notifications,
          .pasteboard = computer.pasteboard,
          .displayPreferences = m_preferences,
          .clock = computer.time,
          .scheduler = computer.time,
          .host = computer.host,
          .stacking = computer.stacking,
          .dataFolders = DesktopEntries::standardDataFolders(),
          .quit = [] {},
      })
    , m_delegate(m_engine.state, {m_engine.runner, m_notifications, computer.time, m_statusItem, m_windows, [] {}})
{
    m_engine.blockModal.showIn(m_windows);
}

QWindow* RunningApplicationProcess::window(const QString& title)
{
    for (auto* window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window->title() == title)
            return window;
    }
    return nullptr;
}

} // namespace stillgate::test
