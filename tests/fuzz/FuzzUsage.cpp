#include "FuzzTarget.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryLog.h"
#include "Platform/Memory/MemoryUserDefaults.h"
#include "Platform/Memory/MemoryWorkspace.h"
#include "Require.h"
#include "ScreenTime/ScreenTimeTracker.h"
#include "tests/support/FakeBackend.h"

#include <algorithm>
#include <functional>

namespace stillgate
{

namespace
{

constexpr std::int64_t minutesOfADay = 24 * 60;

void requireReportOfOneDay(const DailyScreenTime& day)
{
    const auto& apps = day.appUsage.value();
    require(day.totalMinutes >= 0 && day.totalMinutes <= minutesOfADay, "the total is that of a day");
    require(apps.size() <= 50, "fifty apps at most");
    require(std::ranges::is_sorted(apps, std::greater{}, &AppUsageEntry::minutes), "the most used first");
    for (const auto& app : apps)
        require(app.minutes > 0 && app.minutes <= day.totalMinutes, "an app has a part of the total");
}

void requireSoundDay(std::string_view text)
{
    MemoryFileManager files;
    MemoryWorkspace workspace;
    ManualTime time;
    MemoryHost host;
    MemoryUserDefaults defaults;
    test::FakeBackend backend;
    MemoryLog log;
    ScreenTimeTracker tracker{workspace, time, time, files, host, defaults, backend, log};

    const auto file = files.applicationSupportDirectory() / "com.stillgate.macos" / "screentime" / "usage.dat";
    files.put(file, std::string{text});
    tracker.startTracking();
    const auto loaded = tracker.minutesToday();
    require(loaded >= 0 && loaded <= minutesOfADay, "a file holds no more than a day");

    workspace.bringToFront("org.chess");
    time.advance(std::chrono::minutes{1});
    require(tracker.minutesToday() == std::min(loaded + 1, minutesOfADay), "the day goes on from there");
    runDetached(tracker.reportToBackend());
    requireReportOfOneDay(backend.reportedDays.at(0));

    tracker.stopTracking();
    const auto kept = UsageFile{files}.load();
    const bool isOverLong = tracker.minutesToday() == minutesOfADay; // which the next start may refuse
    require(isOverLong || (kept && kept->appUsage == tracker.appUsage.value()), "what was counted is kept");
}

} // namespace

} // namespace stillgate

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    stillgate::requireSoundDay(stillgate::textOf(data, size));
    return 0;
}
