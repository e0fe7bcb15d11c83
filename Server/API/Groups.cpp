#include "Models/Groups.h"

#include "API/Route.h"
#include "Family/Budget.h"
#include "Family/Connections.h"
#include "Family/Days.h"
#include "Family/Streaks.h"

#include <algorithm>

namespace stillgate::server
{

namespace
{

/// There is one group: the user and the people linked with them.
std::vector<GroupMember> membersOf(Call& call, const std::string& groupId)
{
    if (groupId != "default")
        throw notFound();
    return groupOf(call.database, call.account.userId);
}

/// Own rules and guardians' rules that are in force.
std::int64_t activeRulesOf(Database& database, const std::string& userId)
{
    return database.number("SELECT COUNT(*) FROM block_rules WHERE user_id = ? AND enabled = 1", userId) +
        database.number("SELECT COUNT(*) FROM guardian_rules JOIN connections "
                        "ON connections.id = guardian_rules.connection_id "
                        "WHERE connections.controlled_user_id = ? AND guardian_rules.enabled = 1",
            userId);
}

Response dashboard(Call& call)
{
    std::vector<GroupDashboardEntry> entries;
    for (const auto& member : membersOf(call, call.argument("id"))) {
        const auto today = dayOf(call.now, member.timeZone);
        const auto streak = streakOf(call.database, member.userId, today);
        entries.push_back({.userId = member.userId,
            .displayName = member.displayName,
            .role = member.role,
            .streak = streak.currentStreakDays,
            .longestStreak = streak.longestStreakDays,
            .activeRules = activeRulesOf(call.database, member.userId),
            .screenTimeToday = usedMinutesOn(call.database, member.userId, today)});
    }
    return jsonAnswer(entries);
}

int periodOf(Call& call)
{
    static const std::map<std::string, int> lengths{{"", 7}, {"day", 1}, {"week", 7}, {"month", 30}};
    const auto length = lengths.find(call.query("period"));
    require(length != lengths.end(), "period: day, week or month");
    return length->second;
}

/// The board of the group: `fill` gives a member's values, `better` says whose place is higher. Who is level shares
/// the place.
template <class Fill, class Value>
Response board(Call& call, Fill fill, Value value, bool moreIsBetter)
{
    std::vector<LeaderboardEntry> entries;
    for (const auto& member : membersOf(call, call.query("groupId"))) {
        LeaderboardEntry entry{.userId = member.userId, .displayName = member.displayName, .role = member.role};
        fill(entry, member, dayOf(call.now, member.timeZone));
        entries.push_back(std::move(entry));
    }
    const auto score = [&](const LeaderboardEntry& entry) {
        return (entry.*value).value_or(0) * (moreIsBetter ? -1 : 1);
    };
    std::ranges::sort(entries, {}, [&](const auto& entry) { return std::pair{score(entry), entry.displayName}; });
    for (std::size_t place = 0; place < entries.size(); ++place) {
        const bool isLevel = place > 0 && score(entries[place]) == score(entries[place - 1]);
        entries[place].rank = isLevel ? entries[place - 1].rank : static_cast<std::int64_t>(place) + 1;
    }
    return jsonAnswer(entries);
}

Response streakBoard(Call& call)
{
    const auto fill = [&](LeaderboardEntry& entry, const GroupMember& member, const std::string& today) {
        const auto streak = streakOf(call.database, member.userId, today);
        entry.currentStreak = streak.currentStreakDays;
        entry.longestStreak = streak.longestStreakDays;
    };
    return board(call, fill, &LeaderboardEntry::currentStreak, true);
}

/// Focus is the time under protection: between two heartbeats with blocking active.
Response focusBoard(Call& call)
{
    const auto days = periodOf(call);
    const auto fill = [&](LeaderboardEntry& entry, const GroupMember& member, const std::string& today) {
        const auto seconds =
            call.database.number("SELECT SUM(focus_seconds) FROM active_days WHERE user_id = ? AND day >= ?",
                member.userId, dayAfter(today, 1 - days));
        entry.focusMinutes = seconds / 60;
        entry.focusHours = static_cast<double>(seconds) / 3600;
    };
    return board(call, fill, &LeaderboardEntry::focusMinutes, true);
}

/// The least time comes first.
Response screenTimeBoard(Call& call)
{
    const auto days = periodOf(call);
    const auto fill = [&](LeaderboardEntry& entry, const GroupMember& member, const std::string& today) {
        const auto start = dayAfter(today, 1 - days);
        entry.totalScreenTimeMinutes = call.database.number(
            "SELECT SUM(total_minutes) FROM daily_screen_time WHERE user_id = ? AND date >= ?", member.userId, start);
        const auto counted = call.database.number(
            "SELECT COUNT(DISTINCT date) FROM daily_screen_time WHERE user_id = ? AND date >= ?", member.userId, start);
        entry.avgDailyMinutes = *entry.totalScreenTimeMinutes / std::max<std::int64_t>(counted, 1);
    };
    return board(call, fill, &LeaderboardEntry::totalScreenTimeMinutes, false);
}

} // namespace

Routes groupRoutes()
{
    return {
        {"GET", "/groups/{id}/dashboard", dashboard},
        {"GET", "/leaderboard/streak", streakBoard},
        {"GET", "/leaderboard/focus", focusBoard},
        {"GET", "/leaderboard/screen-time", screenTimeBoard},
    };
}

} // namespace stillgate::server
