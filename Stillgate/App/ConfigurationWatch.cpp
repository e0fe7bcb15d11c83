#include "App/ConfigurationWatch.h"

#include "Models/Version.h"

namespace stillgate
{

namespace
{

constexpr std::chrono::seconds checkPeriod{300};

} // namespace

ConfigurationWatch::ConfigurationWatch(
    SessionData& session, Backend& backend, const Bundle& bundle, Scheduler& scheduler, Log& log)
    : m_session(session)
    , m_backend(backend)
    , m_bundle(bundle)
    , m_scheduler(scheduler)
    , m_log(log)
{}

Task<> ConfigurationWatch::checkAppConfig()
{
    const auto config = co_await m_backend.getAppConfig();
    if (!config) {
        m_log.write("[AppState] App config check failed (continuing): " + config.error().description());
        co_return;
    }
    m_session.isMaintenanceMode = config->maintenanceMode;
    m_session.maintenanceMessage = config->maintenanceMessage;
    applyMinimumVersion(*config);
}

void ConfigurationWatch::applyMinimumVersion(const AppConfig& config)
{
    const auto minimum = config.minVersion.value_or("");
    const auto current = m_bundle.infoValue("CFBundleShortVersionString").value_or("1.0.0");
    const bool isTooOld = !minimum.empty() && isVersion(current, /*lessThan*/ minimum);
    m_session.requiresForceUpdate = isTooOld;
    if (!isTooOld)
        return;
    m_session.requiredVersion = minimum;
    m_session.forceUpdateMessage = config.forceUpdateMessage;
    m_session.forceUpdateUrl = config.forceUpdateUrl;
}

void ConfigurationWatch::start()
{
    m_configCheckTimer = m_scheduler.repeating(checkPeriod, [this] { runDetached(checkAppConfig()); });
}

void ConfigurationWatch::stop()
{
    m_configCheckTimer.reset();
}

} // namespace stillgate
