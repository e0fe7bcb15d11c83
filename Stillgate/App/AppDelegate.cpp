#include "App/AppDelegate.h"

#include "App/Shortcuts.h"
#include "Localization/L.h"

namespace stillgate
{

namespace
{

/// What the session calls for; nothing when it is up.
std::optional<std::string_view> windowFor(const SessionData& session)
{
    if (session.isMaintenanceMode)
        return windowid::maintenance;
    if (session.requiresForceUpdate)
        return windowid::forceUpdate;
    return session.isAuthenticated ? std::nullopt : std::optional{windowid::auth};
}

} // namespace

AppDelegate::AppDelegate(AppState& state, const ShellServices& shell)
    : m_state(state)
    , m_shell(shell)
    , m_windows(shell.windowFactory)
    , m_watch(state, m_windows, shell.scheduler, [this] { m_shell.services.startServices(); })
{}

void AppDelegate::applicationDidFinishLaunching()
{
    setUpMenuBar();
    m_openAuthWindow = m_shell.notifications.observe(sgOpenAuthWindow, [this] { m_windows.open(windowid::auth); });
    m_watch.start();
    runDetached(launch());
}

Task<> AppDelegate::launch()
{
    co_await m_state.bootstrap();
    m_hasLaunched = true;
    if (m_state.isOnboarding && !m_state.isBehindAGate())
        m_state.finishOnboarding(); // there is no first-run flow yet: the watch goes on with the sign-in
    else if (const auto window = windowFor(m_state))
        m_windows.open(*window);
    else
        m_shell.services.startServices();
}

void AppDelegate::setUpMenuBar()
{
    m_statusItemClick = m_shell.statusItem.onClick([this] { togglePopover(); });
    m_shell.statusItem.show("Stillgate",
        {
            {L.localized("desktop.tray.refresh"), [this] { runDetached(m_state.refreshData()); }},
            {L.localized("desktop.tray.quit"), [this] { terminate(); }},
        });
}

void AppDelegate::togglePopover()
{
    if (m_popover && m_popover->isShown()) {
        m_popover->close();
        return;
    }
    if (!m_popover)
        m_popover = m_shell.windowFactory.makePopover();
    m_popover->show(m_shell.statusItem.bounds());
}

void AppDelegate::openSettingsToTab(int tag)
{
    m_shell.notifications.post(sgNavigateToTab, {{"tab", tag}});
    m_shell.windowFactory.showSettings();
}

bool AppDelegate::handleCommandKey(std::string_view characters)
{
    const auto shortcut = shortcutFor(characters);
    if (!shortcut)
        return false;
    if (shortcut->opensTab)
        openSettingsToTab(*shortcut->opensTab);
    else
        runDetached(m_state.refreshData());
    return true;
}

void AppDelegate::applicationReopened()
{
    if (!m_hasLaunched)
        return; // whether anybody is signed in isn't known yet; what there is to see comes by itself
    if (m_windows.bringToFront())
        return;
    if (const auto window = windowFor(m_state))
        m_windows.open(*window);
    else
        m_shell.windowFactory.showSettings(); // also where a desktop shows no status items
}

void AppDelegate::terminate()
{
    if (!std::exchange(m_isTerminating, true))
        runDetached(end());
}

Task<> AppDelegate::end()
{
    co_await m_shell.services.applicationWillTerminate();
    m_shell.quit();
}

} // namespace stillgate
