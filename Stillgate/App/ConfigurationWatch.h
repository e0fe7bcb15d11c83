#pragma once

#include "App/SessionData.h"
#include "Backend/Backend.h"
#include "Platform/Bundle.h"
#include "Platform/Log.h"
#include "Platform/Scheduler.h"

namespace stillgate
{

/// Asks the backend whether it is under maintenance and whether this version is still allowed, and raises or lowers
/// the gates accordingly.
class ConfigurationWatch
{
public:
    ConfigurationWatch(SessionData& session, Backend& backend, const Bundle& bundle, Scheduler& scheduler, Log& log);

    /// One check now. If the backend can't be asked, that is logged and the gates stay as they are.
    [[nodiscard]] Task<> checkAppConfig();

    /// A check every 300 seconds, the first one 300 seconds from now; replaces an earlier timer.
    void start();
    void stop();

private:
    void applyMinimumVersion(const AppConfig& config);

    SessionData& m_session;
    Backend& m_backend;
    const Bundle& m_bundle;
    Scheduler& m_scheduler;
    Log& m_log;
    std::unique_ptr<Timer> m_configCheckTimer;
};

} // namespace stillgate
