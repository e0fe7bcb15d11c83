#include "Family/Streaks.h"

#include "Family/Days.h"

namespace stillgate::server
{

namespace
{

bool counts(const ActiveDay& day)
{
    return day.hasHeartbeat && !day.hasBypass;
}

void record(Database& database, const std::string& userId, const ActiveDay& day, std::int64_t focusSeconds)
{
    database.execute("INSERT INTO active_days (user_id, day, has_heartbeat, has_bypass, focus_seconds) "
                     "VALUES (?, ?, ?, ?, ?) ON CONFLICT (user_id, day) DO UPDATE SET "
                     "has_heartbeat = CASE WHEN excluded.has_heartbeat = 1 THEN 1 ELSE active_days.has_heartbeat END, "
                     "has_bypass = CASE WHEN excluded.has_bypass = 1 THEN 1 ELSE active_days.has_bypass END, "
                     "focus_seconds = active_days.focus_seconds + excluded.focus_seconds",
        userId, day.day, day.hasHeartbeat, day.hasBypass, focusSeconds);
}

} // namespace

Streak streakOf(const std::vector<ActiveDay>& days, const std::string& today)
{
    Streak streak;
    std::string start;
    std::int64_t length = 0;
    for (const auto& day : days) {
        if (!counts(day))
            continue;
        const bool continues = streak.lastActiveDate && dayAfter(*streak.lastActiveDate, 1) == day.day;
        length = continues ? length + 1 : 1;
        if (!continues)
            start = day.day;
        streak.lastActiveDate = day.day;
        streak.longestStreakDays = std::max(streak.longestStreakDays, length);
    }
    const bool isBrokenToday = !days.empty() && days.back().day == today && days.back().hasBypass;
    const bool isRunning = streak.lastActiveDate && !isBrokenToday && *streak.lastActiveDate >= dayAfter(today, -1);
    if (isRunning) {
        streak.currentStreakDays = length;
        streak.streakStartDate = start;
    }
    return streak;
}

Streak streakOf(Database& database, const std::string& userId, const std::string& today)
{
    return streakOf(
        database.all<ActiveDay>(
            "SELECT day, has_heartbeat, has_bypass FROM active_days WHERE user_id = ? ORDER BY day", userId),
        today);
}

void recordHeartbeat(Database& database, const std::string& userId, const std::string& day, std::chrono::seconds focus)
{
    record(database, userId, {.day = day, .hasHeartbeat = true}, focus.count());
}

void recordBypass(Database& database, const std::string& userId, const std::string& day)
{
    record(database, userId, {.day = day, .hasBypass = true}, 0);
}

} // namespace stillgate::server
