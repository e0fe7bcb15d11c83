#include "App/Heartbeat.h"

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr std::chrono::seconds beatPeriod{300};
constexpr std::int64_t leastReportedMinutes = 5;

} // namespace

Heartbeat::Heartbeat(SessionData& session, Backend& backend, AppMonitor& monitor, UsageTracker& tracker,
    Scheduler& scheduler, std::function<void()> afterBeat)
    : m_session(session)
    , m_backend(backend)
    , m_monitor(monitor)
    , m_tracker(tracker)
    , m_scheduler(scheduler)
    , m_afterBeat(std::move(afterBeat))
{}

void Heartbeat::start()
{
    m_running.cancel();
    m_running = {};
    m_heartbeatTimer = m_scheduler.repeating(beatPeriod, [this] { runDetached(beat()); });
}

void Heartbeat::stop()
{
    m_heartbeatTimer.reset();
    m_running.cancel();
}

Task<> Heartbeat::beat()
{
    const auto running = m_running.token();
    co_await report();
    if (const auto budget = co_await m_backend.getScreenTimeBudget(running)) {
        m_session.budget = *budget;
        m_monitor.updateBudget(*budget);
    }
    if (!running.isCancelled())
        m_afterBeat();
}

Task<> Heartbeat::report()
{
    if (const auto deviceId = m_session.currentDeviceId)
        (void)co_await m_backend.sendHeartbeat(*deviceId, m_monitor.blockedAppAttempts.value());
    (void)co_await m_backend.reportUsage(std::max(m_tracker.minutesToday(), leastReportedMinutes));
    co_await m_tracker.reportToBackend();
}

} // namespace stillgate
