#include "App/WindowWatch.h"

namespace stillgate
{

using namespace std::chrono_literals;

WindowWatch::WindowWatch(
    const SessionData& session, ManagedWindows& windows, Scheduler& scheduler, std::function<void()> startServices)
    : m_session(session)
    , m_windows(windows)
    , m_scheduler(scheduler)
    , m_startServices(std::move(startServices))
{}

void WindowWatch::start()
{
    m_wasMaintenance = m_session.isMaintenanceMode;
    m_wasForceUpdate = m_session.requiresForceUpdate;
    m_wasOnboarding = m_session.isOnboarding;
    m_timer = m_scheduler.repeating(500ms, [this] { pass(); });
}

void WindowWatch::pass()
{
    followMaintenance();
    followForcedUpdate();
    if (m_session.isBehindAGate())
        return;
    if (m_wasOnboarding && !m_session.isOnboarding) {
        m_windows.close(windowid::onboarding);
        m_windows.open(windowid::auth);
        m_wasOnboarding = false;
    }
    followSession();
}

void WindowWatch::followMaintenance()
{
    if (m_wasMaintenance == m_session.isMaintenanceMode)
        return;
    m_wasMaintenance = m_session.isMaintenanceMode;
    if (m_wasMaintenance) {
        m_windows.close(windowid::auth);
        m_windows.open(windowid::maintenance);
    } else {
        m_windows.close(windowid::maintenance);
        if (!m_session.isAuthenticated)
            m_windows.open(windowid::auth);
    }
}

void WindowWatch::followForcedUpdate()
{
    if (m_wasForceUpdate || !m_session.requiresForceUpdate)
        return;
    m_wasForceUpdate = true;
    m_windows.close(windowid::auth);
    m_windows.open(windowid::forceUpdate);
}

void WindowWatch::followSession()
{
    if (m_wasAuthenticated == m_session.isAuthenticated)
        return;
    m_wasAuthenticated = m_session.isAuthenticated;
    if (m_wasAuthenticated) {
        m_windows.close(windowid::auth);
        m_startServices();
    } else {
        m_windows.open(windowid::auth);
    }
}

} // namespace stillgate
