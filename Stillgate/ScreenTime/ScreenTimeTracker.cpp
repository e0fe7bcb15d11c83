#include "ScreenTime/ScreenTimeTracker.h"

#include <algorithm>
#include <numeric>
#include <ranges>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr auto pollPeriod = 30s;
constexpr std::size_t mostReportedApps = 50;
constexpr Date reference1970{};

/// What the backend takes as a day. One on which the clocks go back, or a clock is set back, can hold more.
constexpr std::int64_t mostMinutes = 24 * 60;

std::int64_t minutesOf(std::int64_t seconds)
{
    return std::min(seconds / 60, mostMinutes);
}

/// Nothing for a number that is no date.
std::optional<Date> dateFromSecondsSince1970(double seconds)
{
    static const double sinceReference2001 = secondsSince2001(reference1970);
    return seconds > 0 ? dateFromSecondsSince2001(seconds + sinceReference2001) : std::nullopt;
}

double secondsSince1970(Date date)
{
    return std::chrono::duration<double>{date - reference1970}.count();
}

} // namespace

ScreenTimeTracker::ScreenTimeTracker(Workspace& workspace, Clock& clock, Scheduler& scheduler, FileManager& files,
    Host& host, UserDefaults& defaults, Backend& backend, Log& log)
    : m_workspace(workspace)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_host(host)
    , m_defaults(defaults)
    , m_backend(backend)
    , m_log(log)
    , m_file(files)
    , m_lastReportDate(host.startOfDay(clock.now()))
{}

void ScreenTimeTracker::startTracking()
{
    if (m_pollTimer)
        return;
    loadTodayUsage();
    resetIfNewDay(); // the file can be of an earlier day, whose total nobody is to see as today's
    m_activation = m_workspace.onActivation([this](const auto& application) { activeAppChanged(application); });
    setCurrentApp(m_workspace.frontmostApplication());
    m_pollTimer = m_scheduler.repeating(pollPeriod, [this] { countUntilNow(); });
}

void ScreenTimeTracker::stopTracking()
{
    if (!m_pollTimer) // what isn't loaded yet is in the file alone
        return;
    countUntilNow();
    save(); // also where nothing is left to count: an earlier write may have failed
    m_pollTimer.reset();
    m_activation.reset();
    m_currentApp.reset();
}

std::int64_t ScreenTimeTracker::minutesToday()
{
    countUntilNow();
    return todayTotal;
}

UsageTracker::AppUsage ScreenTimeTracker::usageToday()
{
    countUntilNow();
    return appUsage;
}

/// Before every look at the count. Where nobody had looked since midnight, a report would tell yesterday's total as
/// today's; the backend keeps the largest of a day, and would lock the user out for all of it.
void ScreenTimeTracker::countUntilNow()
{
    flushCurrentApp();
    resetIfNewDay();
}

void ScreenTimeTracker::flushCurrentApp()
{
    if (!m_currentApp)
        return;
    const auto counted = std::chrono::floor<std::chrono::seconds>(m_clock.monotonicNow() - m_currentAppStart);
    if (counted < 1s)
        return;
    auto usage = appUsage.value();
    usage[*m_currentApp] += counted.count();
    // Not to now: the fraction of a second that each of many flushes leaves would be lost.
    m_currentAppStart += counted;
    setUsage(std::move(usage));
    save();
}

void ScreenTimeTracker::resetIfNewDay()
{
    const auto today = m_host.startOfDay(m_clock.now());
    // Also back to an earlier day: a clock that was ahead over midnight, and is right again, would otherwise leave a
    // day to come here, and the midnight before that would pass unseen. What was counted meanwhile was in front today.
    const auto lastDay = std::exchange(m_lastReportDate, today);
    if (today <= lastDay)
        return;
    setUsage({});
    save();
}

void ScreenTimeTracker::loadTodayUsage()
{
    auto persisted = m_file.load();
    if (!persisted)
        return;
    m_lastReportDate = dateFromSecondsSince1970(persisted->lastReportDate).value_or(m_lastReportDate);
    setUsage(std::move(persisted->appUsage));
}

void ScreenTimeTracker::activeAppChanged(const std::shared_ptr<RunningApplication>& application)
{
    countUntilNow();
    setCurrentApp(application);
}

void ScreenTimeTracker::setCurrentApp(const std::shared_ptr<RunningApplication>& application)
{
    m_currentApp = application ? application->bundleIdentifier() : std::nullopt;
    // The monotonic clock: one that is set would make time or lose it, and a suspended machine is not in use.
    m_currentAppStart = m_clock.monotonicNow();
}

void ScreenTimeTracker::setUsage(AppUsage usage)
{
    const auto seconds = std::views::values(usage);
    const auto total = std::accumulate(seconds.begin(), seconds.end(), std::int64_t{0});
    appUsage = std::move(usage);
    todayTotal = minutesOf(total);
}

void ScreenTimeTracker::save()
{
    m_file.save({appUsage.value(), secondsSince1970(m_lastReportDate)});
}

Task<> ScreenTimeTracker::reportToBackend()
{
    countUntilNow();
    const auto sent = co_await m_backend.sendDailyScreenTime(report());
    if (!sent)
        m_log.write("[ScreenTimeTracker] Failed to report: " + sent.error().description());
}

DailyScreenTime ScreenTimeTracker::report() const
{
    return {
        .deviceId = m_defaults.string("sg_current_device_id").value_or("unknown"),
        .date = iso8601FromDate(m_clock.now()),
        .totalMinutes = todayTotal,
        .appUsage = mostUsedApps(),
    };
}

/// Those of a minute at least, the most used first; of equal ones, in the order of their identifiers.
std::vector<AppUsageEntry> ScreenTimeTracker::mostUsedApps() const
{
    std::vector<AppUsageEntry> apps;
    for (const auto& [identifier, seconds] : appUsage.value()) {
        if (const auto minutes = minutesOf(seconds); minutes > 0)
            apps.push_back({.identifier = identifier, .minutes = minutes});
    }
    std::ranges::sort(
        apps, {}, [](const auto& app) { return std::pair{-app.minutes, std::string_view{app.identifier}}; });
    apps.resize(std::min(apps.size(), mostReportedApps));
    for (auto& app : apps)
        app.name = appNameForBundle(app.identifier);
    return apps;
}

std::string ScreenTimeTracker::appNameForBundle(const std::string& identifier) const
{
    return m_workspace.nameOfApplication(identifier).value_or(identifier);
}

} // namespace stillgate
