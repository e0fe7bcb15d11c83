#pragma once

#include "Blocking/HostsFileService.h"
#include "Blocking/QuickBlockSession.h"
#include "Platform/Clock.h"
#include "Platform/Scheduler.h"
#include "Platform/UserNotifications.h"

namespace stillgate
{

/// The clock of the quick block, and its part of the hosts file. There is one session at most, in memory alone. It ends
/// by the civil clock, within a second, and then the user is told.
class QuickBlock
{
public:
    /// `session`: where it stands for all to see.
    QuickBlock(QProperty<std::optional<QuickBlockSession>>& session, HostsFileService& hostsFile,
        UserNotifications& notifications, const Clock& clock, Scheduler& scheduler);

    /// Takes the place of a session that runs. The file is left alone when neither of the two has domains.
    void start(
        const std::set<std::string>& bundleIds, const std::set<std::string>& domains, std::int64_t durationMinutes);
    void stop();

    /// Whether the session names the app, also in the moment between its time and its end.
    [[nodiscard]] bool names(const std::string& bundleId) const;

    /// Whether the app is blocked now.
    [[nodiscard]] bool blocks(const std::string& bundleId) const;

private:
    [[nodiscard]] bool isExpired() const;
    void checkExpiry();

    QProperty<std::optional<QuickBlockSession>>& m_session;
    HostsFileService& m_hostsFile;
    UserNotifications& m_notifications;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    std::unique_ptr<Timer> m_timer; ///< runs while there is a session
};

} // namespace stillgate
