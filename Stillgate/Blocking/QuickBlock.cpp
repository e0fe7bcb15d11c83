#include "Blocking/QuickBlock.h"

#include "Blocking/DomainNames.h"

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr auto expiryInterval = 1s;

std::set<std::string> eachLowercased(const std::set<std::string>& texts)
{
    std::set<std::string> lower;
    for (const auto& text : texts)
        lower.insert(lowercased(text));
    return lower;
}

} // namespace

QuickBlock::QuickBlock(QProperty<std::optional<QuickBlockSession>>& session, HostsFileService& hostsFile,
    UserNotifications& notifications, const Clock& clock, Scheduler& scheduler)
    : m_session(session)
    , m_hostsFile(hostsFile)
    , m_notifications(notifications)
    , m_clock(clock)
    , m_scheduler(scheduler)
{}

void QuickBlock::start(
    const std::set<std::string>& bundleIds, const std::set<std::string>& domains, std::int64_t durationMinutes)
{
    m_session = QuickBlockSession{.bundleIds = eachLowercased(bundleIds),
        .domains = domains,
        .expiresAt = m_clock.now() + std::chrono::minutes{durationMinutes},
        .durationMinutes = durationMinutes};
    m_hostsFile.setTemporaryDomains(domains);
    m_timer = m_scheduler.repeating(expiryInterval, [this] { checkExpiry(); });
}

void QuickBlock::stop()
{
    m_hostsFile.setTemporaryDomains({});
    m_session = std::nullopt;
    m_timer.reset();
}

bool QuickBlock::names(const std::string& bundleId) const
{
    const auto& session = m_session.value();
    return session && session->bundleIds.contains(bundleId);
}

bool QuickBlock::blocks(const std::string& bundleId) const
{
    return names(bundleId) && !isExpired();
}

bool QuickBlock::isExpired() const
{
    return m_clock.now() >= m_session.value()->expiresAt;
}

void QuickBlock::checkExpiry()
{
    if (!isExpired())
        return;
    stop();
    m_notifications.post("Stillgate", "Quick block session ended.");
}

} // namespace stillgate
