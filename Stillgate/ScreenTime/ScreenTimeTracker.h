#pragma once

#include "Backend/Backend.h"
#include "Platform/Clock.h"
#include "Platform/Host.h"
#include "Platform/Log.h"
#include "Platform/Scheduler.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"
#include "ScreenTime/UsageFile.h"
#include "ScreenTime/UsageTracker.h"

#include <QProperty>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// Counts, for each app, the time that it is in front during the present day. Main thread only.
///
/// The count is kept in a file, so that a restart goes on with it; a program that is killed loses at most the last 30
/// seconds. There is no look at whether anybody is at the machine: in front is in use.
class ScreenTimeTracker final : public UsageTracker
{
public:
    ScreenTimeTracker(Workspace& workspace, Clock& clock, Scheduler& scheduler, FileManager& files, Host& host,
        UserDefaults& defaults, Backend& backend, Log& log);

    /// Goes on with what the file holds of the present day.
    void startTracking() override;

    /// The count stays, here and in the file. Without a start it does nothing.
    void stopTracking() override;

    [[nodiscard]] std::int64_t minutesToday() override;
    [[nodiscard]] AppUsage usageToday() override;

    /// The whole day up to now, with the 50 apps that were used most. A failure is logged; the next report makes up
    /// for it.
    [[nodiscard]] Task<> reportToBackend() override;

    // Of the present day, as of the last count, 30 seconds ago at most.
    QProperty<qint64> todayTotal{0}; ///< minutes
    QProperty<AppUsage> appUsage;    ///< seconds, by bundle identifier in the case in which the system gives it

private:
    void countUntilNow();
    void flushCurrentApp();
    void resetIfNewDay();
    void loadTodayUsage();
    void activeAppChanged(const std::shared_ptr<RunningApplication>& application);
    void setCurrentApp(const std::shared_ptr<RunningApplication>& application);
    void setUsage(AppUsage usage);
    void save();

    [[nodiscard]] DailyScreenTime report() const;
    [[nodiscard]] std::vector<AppUsageEntry> mostUsedApps() const;
    [[nodiscard]] std::string appNameForBundle(const std::string& identifier) const;

    Workspace& m_workspace;
    Clock& m_clock;
    Scheduler& m_scheduler;
    Host& m_host;
    UserDefaults& m_defaults;
    Backend& m_backend;
    Log& m_log;
    UsageFile m_file;

    Date m_lastReportDate; ///< the start of the day that `appUsage` belongs to

    std::optional<std::string> m_currentApp; ///< the app in front, if its time counts
    MonotonicTime m_currentAppStart;         ///< of its time that isn't counted yet

    // Last, so that no call comes in while the rest is being destroyed. None when off.
    std::unique_ptr<Timer> m_pollTimer;
    std::unique_ptr<Observation> m_activation;
};

} // namespace stillgate
