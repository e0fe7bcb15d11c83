#pragma once

#include "Models/Date.h"
#include "Models/Record.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// Today's allowance of the signed-in user.
struct ScreenTimeBudget
{
    std::int64_t dailyLimitMinutes = 0; ///< not above 0: no limit
    std::int64_t earnedMinutesToday = 0;
    std::int64_t usedMinutesToday = 0;
    std::int64_t pendingTaskCount = 0;
    std::int64_t completedTaskCount = 0;

    STILLGATE_RECORD(ScreenTimeBudget, dailyLimitMinutes, earnedMinutesToday, usedMinutesToday, pendingTaskCount,
        completedTaskCount);
};

struct AppUsageEntry
{
    std::string identifier; ///< also its identity
    std::optional<std::string> name;
    std::int64_t minutes = 0;
    std::optional<std::string> category;
    std::optional<std::int64_t> openCount;

    STILLGATE_RECORD(AppUsageEntry, identifier, name, minutes, category, openCount);
};

struct DailyScreenTime
{
    std::optional<std::string> userId;
    std::optional<std::string> deviceId;
    std::string date; ///< calendar day, "2026-01-15"; on its way to the backend also the moment, as RFC 3339 text
    std::int64_t totalMinutes = 0;
    std::optional<std::int64_t> pickupCount;
    std::optional<std::vector<AppUsageEntry>> appUsage;
    std::optional<std::map<std::string, std::int64_t>> categoryTotals; ///< minutes
    std::optional<Date> createdAt;

    /// The device and the day: what tells two rows apart.
    [[nodiscard]] std::string id() const;

    STILLGATE_RECORD(
        DailyScreenTime, userId, deviceId, date, totalMinutes, pickupCount, appUsage, categoryTotals, createdAt);
};

struct ScreenTimeReport
{
    std::string period;
    std::string startDate;
    std::string endDate;
    std::int64_t totalMinutes = 0;
    std::int64_t avgDailyMinutes = 0;
    std::int64_t totalPickups = 0;
    std::vector<DailyScreenTime> days;

    STILLGATE_RECORD(ScreenTimeReport, period, startDate, endDate, totalMinutes, avgDailyMinutes, totalPickups, days);
};

} // namespace stillgate
