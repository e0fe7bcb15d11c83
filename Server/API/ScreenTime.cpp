#include "API/Limits.h"
#include "API/Route.h"
#include "Family/Budget.h"
#include "Family/Days.h"

#include <algorithm>

namespace stillgate::server
{

namespace
{

constexpr std::int64_t minutesOfADay = 24 * 60;
constexpr int oldestReport = 31; ///< days: a device that was offline for a holiday still tells what it counted

/// A moment stands for the day of its receipt, as a usage report does: the device's clock may be wrong. A plain day is
/// meant as it is told.
std::string dayOfReport(const std::string& date, const std::string& today)
{
    return dateFromISO8601(date) ? today : date;
}

void checkDay(const DailyScreenTime& day, const std::string& today)
{
    require(isDay(day.date), "date: YYYY-MM-DD, or a date-time of RFC 3339");
    require(
        day.date >= dayAfter(today, -oldestReport) && day.date <= dayAfter(today, 1), "date: too long ago, or ahead");
    requireCount(day.totalMinutes, minutesOfADay, "totalMinutes");
    requireCount(day.pickupCount, mostCounted, "pickupCount");
    const auto apps = day.appUsage.value_or(std::vector<AppUsageEntry>{});
    const auto categories = day.categoryTotals.value_or(std::map<std::string, std::int64_t>{});
    require(apps.size() <= mostApps && categories.size() <= mostApps, "appUsage, categoryTotals: 1000 at most");
    for (const auto& app : apps) {
        for (const auto& text : {std::optional{app.identifier}, app.name, app.category})
            requireText(text, longestName, "appUsage");
        requireCount(app.minutes, minutesOfADay, "appUsage.minutes");
        requireCount(app.openCount, mostCounted, "appUsage.openCount");
    }
    for (const auto& [category, minutes] : categories) {
        requireText(category, longestName, "categoryTotals");
        requireCount(minutes, minutesOfADay, "categoryTotals");
    }
}

Response budget(Call& call)
{
    return jsonAnswer(budgetOf(call.database, call.account.userId, call.account.timeZone, call.now));
}

/// Of several reports of a device the largest counts: one that comes late, or after a restart, takes nothing back.
Response reportUsage(Call& call)
{
    const auto used = call.body<ReportUsageBody>().usedMinutes;
    requireCount(used, minutesOfADay, "usedMinutes");
    call.database.execute("INSERT INTO usage_reports (user_id, device_id, day, used_minutes) VALUES (?, ?, ?, ?) "
                          "ON CONFLICT (user_id, day, device_id) DO UPDATE SET used_minutes = excluded.used_minutes "
                          "WHERE excluded.used_minutes > usage_reports.used_minutes",
        call.account.userId, call.account.deviceId, dayOf(call.now, call.account.timeZone), used);
    return acknowledgement();
}

Response storeDay(Call& call)
{
    auto day = call.body<DailyScreenTime>();
    const auto today = dayOf(call.now, call.account.timeZone);
    day.date = dayOfReport(day.date, today);
    checkDay(day, today);
    call.database.execute(
        "INSERT INTO daily_screen_time (user_id, device_id, date, total_minutes, pickup_count, app_usage, "
        "category_totals, created_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT (user_id, date, device_id) "
        "DO UPDATE SET total_minutes = excluded.total_minutes, pickup_count = excluded.pickup_count, "
        "app_usage = excluded.app_usage, category_totals = excluded.category_totals, created_at = excluded.created_at "
        "WHERE excluded.total_minutes >= daily_screen_time.total_minutes",
        call.account.userId, call.account.deviceId, day.date, day.totalMinutes, day.pickupCount, day.appUsage,
        day.categoryTotals, call.now);
    return acknowledgement();
}

void addApp(std::vector<AppUsageEntry>& apps, const AppUsageEntry& app)
{
    const auto known = std::ranges::find(apps, app.identifier, &AppUsageEntry::identifier);
    if (known == apps.end()) {
        apps.push_back(app);
        return;
    }
    known->minutes += app.minutes;
    if (app.openCount)
        known->openCount = known->openCount.value_or(0) + *app.openCount;
}

template <class T>
T& existing(std::optional<T>& value)
{
    return value ? *value : value.emplace();
}

/// Adds what another device counted on the same day.
void addDevice(DailyScreenTime& day, const DailyScreenTime& device)
{
    day.totalMinutes += device.totalMinutes;
    day.pickupCount = day.pickupCount.value_or(0) + device.pickupCount.value_or(0);
    if (device.categoryTotals) {
        auto& totals = existing(day.categoryTotals);
        for (const auto& [category, minutes] : *device.categoryTotals)
            totals[category] += minutes;
    }
    if (device.appUsage) {
        auto& apps = existing(day.appUsage);
        for (const auto& app : *device.appUsage)
            addApp(apps, app);
    }
}

/// One for each day that a device has told of, the oldest first.
std::vector<DailyScreenTime> daysSince(Database& database, const std::string& userId, const std::string& start)
{
    std::vector<DailyScreenTime> days;
    const auto rows = database.all<DailyScreenTime>(
        "SELECT * FROM daily_screen_time WHERE user_id = ? AND date >= ? ORDER BY date, device_id", userId, start);
    for (const auto& row : rows) {
        if (days.empty() || days.back().date != row.date)
            days.push_back({.userId = userId, .date = row.date});
        addDevice(days.back(), row);
    }
    for (auto& day : days) {
        if (day.appUsage)
            std::ranges::sort(
                *day.appUsage, {}, [](const auto& app) { return std::pair{-app.minutes, app.identifier}; });
    }
    return days;
}

Response report(Call& call)
{
    const auto period = call.query("period");
    static const std::map<std::string, int> lengths{{"day", 1}, {"week", 7}, {"month", 30}};
    const auto length = lengths.find(period);
    require(length != lengths.end(), "period: day, week or month");
    const auto today = dayOf(call.now, call.account.timeZone);
    ScreenTimeReport answer{.period = period, .startDate = dayAfter(today, 1 - length->second), .endDate = today};
    answer.days = daysSince(call.database, call.account.userId, answer.startDate);
    for (const auto& day : answer.days) {
        answer.totalMinutes += day.totalMinutes;
        answer.totalPickups += day.pickupCount.value_or(0);
    }
    // Over the days that were counted: a day without a device isn't a day of zero.
    if (!answer.days.empty())
        answer.avgDailyMinutes = answer.totalMinutes / static_cast<std::int64_t>(answer.days.size());
    return jsonAnswer(answer);
}

} // namespace

Routes screenTimeRoutes()
{
    return {
        {"GET", "/sharing/budget", budget},
        {"POST", "/sharing/report-usage", reportUsage},
        {"POST", "/screen-time/daily", storeDay},
        {"GET", "/screen-time/report", report},
    };
}

} // namespace stillgate::server
