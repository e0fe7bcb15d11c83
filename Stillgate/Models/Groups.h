#pragma once

#include "Models/Record.h"

#include <cstdint>
#include <optional>
#include <string>

namespace stillgate
{

/// A place on one of the three boards: streak, focus, screen time. Each board fills the values of its own.
struct LeaderboardEntry
{
    std::int64_t rank = 0;
    std::string userId; ///< also its identity
    std::optional<std::string> displayName;
    std::optional<std::string> avatarUrl;
    std::optional<std::string> role;
    std::optional<std::int64_t> currentStreak;
    std::optional<std::int64_t> longestStreak;
    std::optional<std::int64_t> focusMinutes;
    std::optional<double> focusHours;
    std::optional<std::int64_t> totalScreenTimeMinutes;
    std::optional<std::int64_t> avgDailyMinutes;

    STILLGATE_RECORD(LeaderboardEntry, rank, userId, displayName, avatarUrl, role, currentStreak, longestStreak,
        focusMinutes, focusHours, totalScreenTimeMinutes, avgDailyMinutes);
};

struct GroupDashboardEntry
{
    std::string userId; ///< also its identity
    std::optional<std::string> displayName;
    std::string role;
    std::int64_t streak = 0; ///< days
    std::int64_t longestStreak = 0;
    std::int64_t activeRules = 0;
    std::int64_t screenTimeToday = 0; ///< minutes

    STILLGATE_RECORD(
        GroupDashboardEntry, userId, displayName, role, streak, longestStreak, activeRules, screenTimeToday);
};

} // namespace stillgate
