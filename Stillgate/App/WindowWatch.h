#pragma once

#include "App/ManagedWindows.h"
#include "App/SessionData.h"
#include "Platform/Scheduler.h"

namespace stillgate
{

/// Opens and closes windows as the session's gates rise and fall. No screen does: it changes the session, and the next
/// pass, half a second later at most, compares its flags with what they were.
class WindowWatch
{
public:
    /// `startServices` is called when a session has come up.
    WindowWatch(
        const SessionData& session, ManagedWindows& windows, Scheduler& scheduler, std::function<void()> startServices);

    /// What the gates are now counts as seen; a session does not, and so comes up with the first pass.
    void start();

private:
    void pass();
    void followMaintenance();
    void followForcedUpdate();
    void followSession();

    const SessionData& m_session;
    ManagedWindows& m_windows;
    Scheduler& m_scheduler;
    std::function<void()> m_startServices;

    bool m_wasMaintenance = false;
    bool m_wasForceUpdate = false; ///< never lowered: that window stays until the program ends
    bool m_wasOnboarding = false;
    bool m_wasAuthenticated = false;
    std::unique_ptr<Timer> m_timer;
};

} // namespace stillgate
