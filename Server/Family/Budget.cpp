#include "Family/Budget.h"

#include "Family/Days.h"

namespace stillgate::server
{

namespace
{

/// The smallest limit that a guardian has set; 0 if none has.
std::int64_t dailyLimitOf(Database& database, const std::string& userId)
{
    return database.number("SELECT MIN(daily_limit_minutes) FROM connections "
                           "WHERE controlled_user_id = ? AND daily_limit_minutes > 0",
        userId);
}

/// The rewards of the tasks that were approved since then. Whoever has a guardian can't approve their own.
std::int64_t earnedMinutesSince(Database& database, const std::string& userId, Date start)
{
    return database.number("SELECT SUM(reward_minutes) FROM tasks WHERE assignee_id = ? AND status = 'approved' "
                           "AND approved_at >= ? AND (approved_by IS NULL OR approved_by <> assignee_id "
                           "OR NOT EXISTS (SELECT 1 FROM connections WHERE controlled_user_id = tasks.assignee_id))",
        userId, start);
}

std::int64_t tasksOf(Database& database, const std::string& userId, const std::string& statuses, Date now)
{
    return database.number(
        "SELECT COUNT(*) FROM tasks WHERE assignee_id = ? AND starts_at <= ? AND status IN " + statuses, userId, now);
}

} // namespace

std::int64_t usedMinutesOn(Database& database, const std::string& userId, const std::string& day)
{
    return database.number("SELECT SUM(used_minutes) FROM usage_reports WHERE user_id = ? AND day = ?", userId, day);
}

ScreenTimeBudget budgetOf(Database& database, const std::string& userId, const std::string& timeZone, Date now)
{
    const auto today = dayOf(now, timeZone);
    return {.dailyLimitMinutes = dailyLimitOf(database, userId),
        .earnedMinutesToday = earnedMinutesSince(database, userId, startOfDay(today, timeZone)),
        .usedMinutesToday = usedMinutesOn(database, userId, today),
        .pendingTaskCount = tasksOf(database, userId, "('pending', 'rejected')", now),
        .completedTaskCount = tasksOf(database, userId, "('completed', 'approved')", now)};
}

} // namespace stillgate::server
