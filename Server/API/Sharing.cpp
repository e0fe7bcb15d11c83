#include "API/Route.h"
#include "Accounts/Attempts.h"
#include "Accounts/Secrets.h"
#include "Family/ActivityFeed.h"
#include "Family/Budget.h"
#include "Family/Connections.h"
#include "Family/Days.h"
#include "Family/Streaks.h"

namespace stillgate::server
{

namespace
{

constexpr int codeLength = 8;
constexpr std::chrono::hours codeLifetime{24};
constexpr std::chrono::minutes onlinePeriod{11}; ///< two beats of a device, and a minute for the way

constexpr auto selectCode = "SELECT sharing_codes.*, 1 AS is_active FROM sharing_codes "
                            "WHERE user_id = ? AND expires_at > ?";

Response myCode(Call& call)
{
    const auto code = call.database.first<SharingCode>(selectCode, call.account.userId, call.now);
    if (!code)
        throw Refusal{404, "There is no code in force"};
    return jsonAnswer(*code);
}

/// A new code ends the one before it.
///
/// THREAT: whoever is held by a permanent connection could make a second account their guardian, and have it approve
/// whatever they like. A further guardian comes in while the connection is flexible.
Response generateCode(Call& call)
{
    const auto& userId = call.account.userId;
    if (isHeldPermanently(call.database, userId))
        throw Refusal{403, "Your guardian has made your connection permanent"};
    call.database.execute("DELETE FROM sharing_codes WHERE user_id = ?", userId);
    call.database.execute("INSERT INTO sharing_codes (code, user_id, created_at, expires_at) VALUES (?, ?, ?, ?)",
        randomCode(codeLength), userId, call.now, call.now + codeLifetime);
    return jsonAnswer(call.database.first<SharingCode>(selectCode, userId, call.now).value(), 201);
}

/// Wrong codes are answered, not thrown: the try is to count.
Response link(Call& call)
{
    const auto code = call.body<LinkCodeBody>().code;
    Attempts attempts{call.database, "sharing-code"};
    const auto attempt = attempts.take({call.account.userId, networkOf(call.request.address)}, call.now);
    if (!attempt)
        return errorAnswer(429, "Too many wrong codes. Wait a quarter of an hour");
    const auto connection = linkWithCode(call.database, call.account.userId, code, call.now);
    if (!connection && connection.error() == LinkFault::unknownCode)
        return errorAnswer(404, "This code is wrong, has expired, or was used");
    attempts.giveBack(*attempt);
    if (!connection)
        return errorAnswer(400, "This is your own code: give it to the person who is to be your guardian");
    return jsonAnswer(LinkCodeResponse{.connection = *connection}, 201);
}

Response listConnections(Call& call)
{
    return jsonAnswer(connectionsOf(call.database, call.account.userId));
}

Response disconnect(Call& call)
{
    const auto connection = connectionOf(call.database, call.account.userId, call.argument("id"));
    if (!connection)
        throw notFound();
    if (connection->role == "controlled" && connection->flexibilityMode == "permanent")
        throw Refusal{403, "Your guardian has made this connection permanent"};
    call.database.execute("DELETE FROM connections WHERE id = ?", connection->id);
    return acknowledgement();
}

Response setLimit(Call& call)
{
    const auto limit = call.body<DailyLimitBody>();
    require(limit.dailyLimitMinutes >= 0 && limit.dailyLimitMinutes <= 24 * 60, "dailyLimitMinutes: 0 to 1440");
    auto connection = guardedConnection(call.database, call.account.userId, limit.connectionId);
    if (connection.dailyLimitMinutes == limit.dailyLimitMinutes)
        return jsonAnswer(connection);
    connection.dailyLimitMinutes = limit.dailyLimitMinutes;
    call.database.execute(
        "UPDATE connections SET daily_limit_minutes = ? WHERE id = ?", limit.dailyLimitMinutes, connection.id);
    ActivityFeed{call.database}.add(connection.id, call.account.userId, "limit_changed",
        {{"minutes", std::to_string(limit.dailyLimitMinutes)}}, call.now);
    return jsonAnswer(connection);
}

struct Controlled
{
    std::string timeZone;
    std::optional<Date> lastActiveAt;

    STILLGATE_RECORD(Controlled, timeZone, lastActiveAt);
};

ControlledUserSummary summaryOf(Database& database, const SharingConnection& connection, Date now)
{
    const auto& userId = connection.controlledUserId;
    const auto person = database
                            .first<Controlled>("SELECT time_zone, (SELECT MAX(last_heartbeat_at) FROM devices "
                                               "WHERE devices.user_id = users.id) AS last_active_at "
                                               "FROM users WHERE id = ?",
                                userId)
                            .value();
    const auto budget = budgetOf(database, userId, person.timeZone, now);
    return {.id = connection.id,
        .userId = userId,
        .displayName = connection.controlledName,
        .screenTimeToday = budget.usedMinutesToday,
        .dailyLimit = connection.dailyLimitMinutes,
        .earnedMinutes = budget.earnedMinutesToday,
        .pendingTasks = budget.pendingTaskCount,
        .completedTasks = budget.completedTaskCount,
        .streak = streakOf(database, userId, dayOf(now, person.timeZone)).currentStreakDays,
        .isOnline = person.lastActiveAt && now - *person.lastActiveAt <= onlinePeriod,
        .lastActiveAt = person.lastActiveAt,
        .flexibilityMode = connection.flexibilityMode,
        .customBlockMessage = connection.customBlockMessage,
        .blockIllustrationKey = connection.blockIllustrationKey,
        .guardianRules = guardianRulesOf(database, connection.id)};
}

Response listControlled(Call& call)
{
    std::vector<ControlledUserSummary> summaries;
    for (const auto& connection : connectionsOf(call.database, call.account.userId)) {
        if (connection.role == "controller")
            summaries.push_back(summaryOf(call.database, connection, call.now));
    }
    return jsonAnswer(summaries);
}

} // namespace

Routes sharingRoutes()
{
    return {
        {"GET", "/sharing/my-code", myCode},
        {"POST", "/sharing/generate", generateCode},
        {"POST", "/sharing/link", link},
        {"GET", "/sharing/connections", listConnections},
        {"DELETE", "/sharing/connections/{id}", disconnect},
        {"PUT", "/sharing/limit", setLimit},
        {"GET", "/sharing/controlled-users", listControlled},
    };
}

} // namespace stillgate::server
