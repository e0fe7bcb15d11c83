#include "App/AppState.h"

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

/// How long a start waits for the configuration check: a backend that hangs must not hold up the blocks.
constexpr auto longestConfigurationWait = 2s;

constexpr auto onboardingSetting = "sg_onboarding_complete";
constexpr auto deviceSetting = "sg_current_device_id";

/// A field takes the answer, or becomes empty on failure.
template <class Field, class T>
void takeOrEmpty(const CancellationToken& session, Field& field, Result<T> answer)
{
    if (session.isCancelled())
        return; // the field is the next session's
    if (answer)
        field = std::move(*answer);
    else
        field = std::remove_cvref_t<decltype(field.value())>{};
}

} // namespace

AppState::AppState(const AppServices& services)
    : m_services(services)
    , m_cache(services.files, services.log)
    , m_categoryDomains(services.files, services.bundle)
    , m_enforcement(services.files, services.hostsFile, services.dnsProxy, services.monitor)
    , m_heartbeat(*this, services.backend, services.monitor, services.tracker, services.scheduler,
          [this] { runDetached(refreshData()); })
    , m_configuration(*this, services.backend, services.bundle, services.scheduler, services.log)
{
    isOnboarding = !services.defaults.boolean(onboardingSetting);
    m_forceLogout = services.notifications.observe(sgForceLogout, [this] { logoutSoon(); });
    m_pinningFailed = services.notifications.observe(sgCertificatePinningFailed, [this] {
        m_services.log.write("[AppState] Certificate pinning failed — forcing logout for safety");
        logoutSoon();
    });
}

Task<> AppState::bootstrap()
{
    if (isOnboarding)
        co_return;
    ++m_startsUnderWay;
    isStarting = true;
    co_await startSession();
    isStarting = --m_startsUnderWay > 0;
}

Task<> AppState::startSession()
{
    m_session.cancel();
    m_session = {};
    const auto session = m_session.token();
    co_await waitAtMost(&m_services.scheduler, longestConfigurationWait, m_configuration.checkAppConfig());
    if (session.isCancelled() || isBehindAGate())
        co_return;
    m_services.backend.loadTokens();
    if (!m_services.backend.isAuthenticated()) {
        isAuthenticated = false;
        co_return;
    }
    loadFromCache();

    const auto loaded = co_await loadFirst(session);
    if (session.isCancelled())
        co_return;
    if (!loaded && loaded.error().is(APIError::unauthorized())) {
        isAuthenticated = false;
        co_return;
    }
    if (!loaded) {
        goOffline(loaded.error());
        co_return;
    }

    isAuthenticated = true;
    isBlockingActive = true;
    isOffline = false;
    co_await loadRest(session);
    if (session.isCancelled())
        co_return;
    takeOwnDevice();
    syncBlockingState();
    m_cache.save(*this);
    startTimersAndTracking();
    // A start doesn't ask for everything: a guardian's rules come with a refresh.
    runDetached(refreshData());
}

/// What a start needs, one after the other. On failure, what came before has been taken.
Task<Result<void>> AppState::loadFirst(CancellationToken session)
{
    auto newStreak = co_await m_services.backend.getStreak(session);
    if (!newStreak)
        co_return firstLoadFailure("getStreak", newStreak.error(), session);
    streak = std::move(*newStreak);

    auto newRules = co_await m_services.backend.getBlockRules(session);
    if (!newRules)
        co_return firstLoadFailure("getBlockRules", newRules.error(), session);
    blockRules = std::move(*newRules);

    auto newDevices = co_await m_services.backend.getDevices(session);
    if (!newDevices)
        co_return firstLoadFailure("getDevices", newDevices.error(), session);
    devices = std::move(*newDevices);
    co_return Result<void>{};
}

std::unexpected<Error> AppState::firstLoadFailure(std::string_view call, Error error, const CancellationToken& session)
{
    if (!session.isCancelled())
        m_services.log.write("[AppState] " + std::string{call} + " failed: " + error.description());
    return std::unexpected{std::move(error)};
}

/// What a start can do without.
Task<> AppState::loadRest(CancellationToken session)
{
    auto& backend = m_services.backend;
    takeOrEmpty(session, schedules, co_await backend.getSchedules(session));
    takeOrEmpty(session, tasks, co_await backend.getTasks(std::nullopt, session));
    takeOrEmpty(session, budget, co_await backend.getScreenTimeBudget(session));
    takeOrEmpty(session, currentUser, co_await backend.getMe(session));
    if (const auto code = co_await backend.getMySharingCode(session))
        sharingCode = code->code;
    takeOrEmpty(session, connections, co_await backend.getSharingConnections(session));
}

void AppState::goOffline(const Error& reason)
{
    isOffline = true;
    loadFromCache();
    isAuthenticated = true;
    isBlockingActive = true;
    m_services.log.write("[AppState] Bootstrap failed (offline): " + reason.description());
    startTimersAndTracking();
}

Task<> AppState::refreshData()
{
    if (!isAuthenticated)
        co_return;
    const auto session = m_session.token();
    const auto loaded = co_await reloadFirst(session);
    if (session.isCancelled())
        co_return;
    if (!loaded) {
        isOffline = true;
        m_services.log.write("[AppState] Refresh failed: " + loaded.error().description());
        co_return;
    }
    co_await reloadRest(session);
    if (session.isCancelled())
        co_return;
    isOffline = false;
    syncBlockingState();
    m_cache.save(*this);
}

/// What a refresh needs, all at the same time. The first failure cancels the others; what was taken before stays.
Task<Result<void>> AppState::reloadFirst(CancellationToken session)
{
    const CancellationSource calls;
    const auto endWithSession = session.onCancel([calls] { calls.cancel(); });
    const auto newStreak = m_services.backend.getStreak(calls.token());
    const auto newRules = m_services.backend.getBlockRules(calls.token());
    const auto newDevices = m_services.backend.getDevices(calls.token());

    const int changesBefore = m_ownChanges;

    Result<void> outcome;
    const auto take = [&](auto& field, auto answer) {
        if (outcome && answer) {
            field = std::move(*answer);
        } else if (outcome) {
            outcome = std::unexpected{answer.error()};
            calls.cancel();
        }
    };
    take(streak, co_await newStreak);
    auto rulesAnswer = co_await newRules;
    if (rulesAnswer && isOvertaken(changesBefore))
        rulesAnswer = blockRules.value();
    take(blockRules, std::move(rulesAnswer));
    take(devices, co_await newDevices);
    co_return outcome;
}

/// What a refresh can do without.
Task<> AppState::reloadRest(CancellationToken session)
{
    auto& backend = m_services.backend;
    const int changesBefore = m_ownChanges;
    auto newSchedules = co_await backend.getSchedules(session);
    if (!isOvertaken(changesBefore))
        takeOrEmpty(session, schedules, std::move(newSchedules));
    takeOrEmpty(session, budget, co_await backend.getScreenTimeBudget(session));
    takeOrEmpty(session, connections, co_await backend.getSharingConnections(session));
    if (session.isCancelled())
        co_return; // a sign-out leaves what follows as it is
    sharingConnections = connections.value();

    const auto asAssignee = co_await backend.getTasks("assignee", session);
    const auto asAssigner = co_await backend.getTasks("assigner", session);
    if (session.isCancelled())
        co_return;
    const std::vector<SGTask> none;
    tasks = mergedTasks(asAssignee.value_or(none), asAssigner.value_or(none));

    if (const auto effective = co_await backend.getEffectiveRules(session))
        guardianRulesForMe = guardianRules(*effective);
    knowsGuardian = !session.isCancelled();
}

void AppState::finishOnboarding()
{
    m_services.defaults.setBoolean(onboardingSetting, true);
    isOnboarding = false;
}

void AppState::logout()
{
    m_session.cancel();
    m_heartbeat.stop();
    m_configuration.stop();
    m_services.tracker.stopTracking();
    m_enforcement.end();
    runDetached(leaveBackend());

    currentUser = std::nullopt;
    isAuthenticated = false;
    isOffline = false;
    blockRules = std::vector<BlockRule>{};
    devices = std::vector<SGDevice>{};
    tasks = std::vector<SGTask>{};
    schedules = std::vector<BlockSchedule>{};
    streak = Streak{};
    isBlockingActive = false;
    currentDeviceId.reset();
    budget = std::nullopt;
    sharingCode = std::nullopt;
    connections = std::vector<SharingConnection>{};
    knowsGuardian = false;
    m_cache.clear();
}

Task<> AppState::leaveBackend()
{
    const auto disabling = m_services.dnsProxy.disable();
    m_services.backend.clearTokens(); // an administrator may have to agree to the other, and a new session come first
    (void)co_await disabling;
}

Task<Result<void>> AppState::deleteAccount()
{
    const auto session = m_session.token();
    auto answer = co_await m_services.backend.deleteAccount();
    if (answer && !session.isCancelled())
        logout();
    co_return answer;
}

/// A notification comes from within an operation of the backend, which is not yet done with the session.
void AppState::logoutSoon()
{
    m_logoutSoon = m_services.scheduler.once(0ms, [this] { logout(); });
}

void AppState::syncBlockingState(HostsFileService::Rewrite rewrite)
{
    const BlockInputs inputs{
        .blockRules = blockRules.value(),
        .guardianRulesForMe = guardianRulesForMe.value(),
        .schedules = schedules.value(),
        .sharingConnections = sharingConnections.value(),
        .budget = budget.value(),
    };
    const auto lookUp = [this](const std::string& category) { return domainsOfCategory(category); };
    m_enforcement.enforce(compileBlocks(inputs, lookUp), rewrite);
}

void AppState::loadFromCache()
{
    if (!m_cache.load(*this))
        return;
    takeOwnDevice();
    syncBlockingState();
}

/// The usage tracker reads the setting: its reports name the device.
void AppState::takeOwnDevice()
{
    currentDeviceId = ownDeviceId(devices);
    if (currentDeviceId && m_services.defaults.string(deviceSetting) != currentDeviceId)
        m_services.defaults.setString(deviceSetting, *currentDeviceId);
}

void AppState::startTimersAndTracking()
{
    m_heartbeat.start();
    m_configuration.start();
    m_services.tracker.startTracking();
}

} // namespace stillgate
