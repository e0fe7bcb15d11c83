#include "Family/ActivityFeed.h"

namespace stillgate::server
{

namespace
{

/// A slider that is dragged sets a limit with each step; the feed keeps where it came to rest.
constexpr std::chrono::minutes limitSettles{1};

/// The text of "activity." and the kind, and for some kinds the value that makes the difference:
/// "activity.rule_toggled.true".
std::string lineOf(const GuardianActivityEvent& event, const Texts& texts, const std::string& language)
{
    auto details = event.metadata.value_or(ActivityFeed::Details{});
    if (details.contains("category"))
        details["rule"] = texts.has(language, "category." + details["category"])
            ? texts.text(language, "category." + details["category"])
            : details["category"];
    auto key = "activity." + event.eventType;
    if (details.contains("enabled"))
        key += '.' + details["enabled"];
    if (details.contains("mode"))
        key += '.' + details["mode"];
    return texts.text(language, key, details);
}

} // namespace

void ActivityFeed::add(const std::string& connectionId, const std::string& actorId, const std::string& eventType,
    const Details& details, Date now)
{
    if (eventType == "limit_changed")
        m_database.execute("DELETE FROM activity_events WHERE connection_id = ? AND actor_user_id = ? "
                           "AND event_type = 'limit_changed' AND created_at > ?",
            connectionId, actorId, now - limitSettles);
    m_database.execute("INSERT INTO activity_events (connection_id, actor_user_id, event_type, metadata, created_at) "
                       "VALUES (?, ?, ?, ?, ?)",
        connectionId, actorId, eventType, details, now);
}

void ActivityFeed::addForGuardians(const std::string& userId, const std::string& actorId, const std::string& eventType,
    const Details& details, Date now)
{
    const auto connections =
        m_database.all<std::string>("SELECT id FROM connections WHERE controlled_user_id = ?", userId);
    for (const auto& connection : connections)
        add(connection, actorId, eventType, details, now);
}

std::vector<GuardianActivityEvent> ActivityFeed::since(
    const std::string& connectionId, Date start, const Texts& texts, const std::string& language)
{
    auto events = m_database.all<GuardianActivityEvent>(
        "SELECT id, connection_id, actor_user_id, event_type, '' AS message, metadata, created_at "
        "FROM activity_events WHERE connection_id = ? AND created_at >= ? ORDER BY created_at DESC, id DESC LIMIT 200",
        connectionId, start);
    for (auto& event : events)
        event.message = lineOf(event, texts, language);
    return events;
}

} // namespace stillgate::server
