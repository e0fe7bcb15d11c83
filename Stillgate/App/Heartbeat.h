#pragma once

#include "App/SessionData.h"
#include "Backend/Backend.h"
#include "Blocking/AppMonitor.h"
#include "Platform/Scheduler.h"
#include "ScreenTime/UsageTracker.h"

namespace stillgate
{

/// Tells the backend every 300 seconds that this device is alive and what it was used for, and brings back today's
/// budget. A call that fails never stops the next one.
class Heartbeat
{
public:
    /// `afterBeat` is called when a beat is over, unless the session is over too.
    Heartbeat(SessionData& session, Backend& backend, AppMonitor& monitor, UsageTracker& tracker, Scheduler& scheduler,
        std::function<void()> afterBeat);

    /// The first beat comes 300 seconds from now; replaces an earlier timer.
    void start();
    void stop();

private:
    [[nodiscard]] Task<> beat();
    [[nodiscard]] Task<> report();

    SessionData& m_session;
    Backend& m_backend;
    AppMonitor& m_monitor;
    UsageTracker& m_tracker;
    Scheduler& m_scheduler;
    std::function<void()> m_afterBeat;
    std::unique_ptr<Timer> m_heartbeatTimer;
    CancellationSource m_running; ///< of the beats since the last start
};

} // namespace stillgate
