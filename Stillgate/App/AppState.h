#pragma once

#include "App/ConfigurationWatch.h"
#include "App/Heartbeat.h"
#include "App/SessionData.h"
#include "App/StateCache.h"
#include "Blocking/BlockEnforcement.h"
#include "Blocking/CategoryDomains.h"
#include "Blocking/DNSProxy.h"
#include "Platform/NotificationCenter.h"
#include "Platform/UserDefaults.h"

namespace stillgate
{

/// What AppState works with. All of it outlives the event loop.
struct AppServices
{
    Backend& backend;
    HostsFileService& hostsFile;
    AppMonitor& monitor;
    UsageTracker& tracker;
    DNSProxy& dnsProxy;

    const Bundle& bundle;
    FileManager& files;
    Log& log;
    NotificationCenter& notifications;
    Scheduler& scheduler;
    UserDefaults& defaults;
};

/// The session: how it starts, is brought up to date, is enforced and ends. Its values are those of SessionData.
class AppState : public SessionData
{
public:
    explicit AppState(const AppServices& services);

    /// From the stored state to a session: at launch, and after each sign-in. Blocks are up from the cache before
    /// the first answer of the backend.
    [[nodiscard]] Task<> bootstrap();

    /// Loads the session's data again; does nothing when signed out.
    [[nodiscard]] Task<> refreshData();

    /// The first-run flow is over, or left for the sign-in; it doesn't come again.
    void finishOnboarding();

    /// Ends the session, with its blocks. What the session still waits for is cancelled, and changes nothing more.
    void logout();

    /// Deletes the account and all that the backend keeps of it; then it signs out.
    [[nodiscard]] Task<Result<void>> deleteAccount();

    /// Compiles the rules as they stand and hands the result to what enforces it. Sites that no rule names any more
    /// stay in the hosts file unless it is to be written always.
    void syncBlockingState(HostsFileService::Rewrite rewrite = HostsFileService::Rewrite::ifListIsMissing);

    /// The block list of a category; none for one that isn't known.
    [[nodiscard]] std::span<const std::string> domainsOfCategory(const std::string& category)
    {
        return m_categoryDomains.find(category);
    }

    /// Writes the session as it stands to the cache, from which the next start takes it.
    void saveToCache() { m_cache.save(*this); }

    /// The user changes rules or schedules. A refresh leaves them alone whose answer may be of before the change ends.
    void beginOwnChange() { ++m_ownChangesUnderWay; }

    /// The backend has answered, whatever it said.
    void endOwnChange()
    {
        --m_ownChangesUnderWay;
        ++m_ownChanges;
    }

    /// Cancelled when the session ends.
    [[nodiscard]] CancellationToken sessionToken() const { return m_session.token(); }

private:
    [[nodiscard]] Task<> startSession();
    [[nodiscard]] Task<Result<void>> loadFirst(CancellationToken session);
    [[nodiscard]] Task<> loadRest(CancellationToken session);
    [[nodiscard]] Task<Result<void>> reloadFirst(CancellationToken session);
    [[nodiscard]] Task<> reloadRest(CancellationToken session);
    [[nodiscard]] Task<> leaveBackend();

    /// Whether an answer may lack what the user has changed; `changesBefore` had ended when it was asked for.
    [[nodiscard]] bool isOvertaken(int changesBefore) const
    {
        return m_ownChangesUnderWay > 0 || m_ownChanges != changesBefore;
    }

    [[nodiscard]] std::unexpected<Error> firstLoadFailure(
        std::string_view call, Error error, const CancellationToken& session);
    void goOffline(const Error& reason);
    void loadFromCache();
    void takeOwnDevice();
    void startTimersAndTracking();
    void logoutSoon();

    AppServices m_services;
    StateCache m_cache;
    CategoryDomains m_categoryDomains;
    BlockEnforcement m_enforcement;
    Heartbeat m_heartbeat;
    ConfigurationWatch m_configuration;

    int m_ownChangesUnderWay = 0;
    int m_ownChanges = 0;         ///< that have ended
    int m_startsUnderWay = 0;     ///< a sign-in may start a session while the launch still waits
    CancellationSource m_session; ///< cancelled when the session ends
    std::unique_ptr<Timer> m_logoutSoon;
    std::unique_ptr<Observation> m_forceLogout;
    std::unique_ptr<Observation> m_pinningFailed;
};

} // namespace stillgate
