#include "ScreenTime/ScreenTimeTracker.h"

#include "Platform/Memory/MemoryWorkspace.h"
#include "tests/support/MemoryMachine.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class ScreenTime : public MemoryMachine
{
protected:
    ScreenTimeTracker& tracker()
    {
        if (!m_tracker)
            m_tracker.emplace(m_workspace, m_time, m_time, m_files, m_host, m_defaults, m_backend, m_log);
        return *m_tracker;
    }

    void start() { tracker().startTracking(); }

    void kill() { m_tracker.reset(); }

    void restart()
    {
        tracker().stopTracking();
        kill();
        start();
    }

    void use(const std::optional<std::string>& app, std::chrono::milliseconds span)
    {
        m_workspace.bringToFront(app);
        m_time.advance(span);
    }

    DailyScreenTime report()
    {
        await(tracker().reportToBackend());
        return m_backend.reportedDays.back();
    }

    static constexpr auto usageFile = "/home/ada/.local/share/com.stillgate.macos/screentime/usage.dat";
    static constexpr Date midnight = std::chrono::sys_days{std::chrono::year{2026} / 1 / 15};
    static constexpr Date nextMidnight = midnight + std::chrono::days{1};

    MemoryWorkspace m_workspace;

private:
    std::optional<ScreenTimeTracker> m_tracker;
};

TEST_F(ScreenTime, aDayGoesOnOverRestarts)
{
    m_workspace.bringToFront("org.Chess");
    start();
    m_time.advance(20min + 10s);
    use("com.mail", 25min);
    restart();
    m_time.advance(5min);
    use("org.Chess", 10min - 10s);
    restart();
    EXPECT_EQ(tracker().minutesToday(), 60);
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("com.mail", 1800), Pair("org.Chess", 1800)));
    EXPECT_EQ(
        m_files.at(usageFile), R"({"appUsage":{"com.mail":1800,"org.Chess":1800},"lastReportDate":1768435200.0})");
}

TEST_F(ScreenTime, killLosesThirtySecondsAtMost)
{
    start();
    use("org.chess", 100s);
    kill();
    tracker().stopTracking(); // before its start it knows nothing that it could write
    start();
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("org.chess", 90)));
}

TEST_F(ScreenTime, nothingCountsButAnAppInFrontWhileTracking)
{
    start();
    use("org.chess", 45s);
    start();
    m_time.advance(15s);
    m_workspace.leaveNothingInFront();
    m_time.advance(60s);
    use(std::nullopt, 60s);
    use("org.chess", 30s);
    tracker().stopTracking();
    m_time.advance(60s);
    use("com.mail", 60s);
    EXPECT_EQ(m_time.pendingTimers(), 0);
    EXPECT_EQ(tracker().minutesToday(), 1);
    start();
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("org.chess", 90)));
}

TEST_F(ScreenTime, fractionsOfASecondAreLostOnlyWhereAppsChange)
{
    start();
    m_workspace.bringToFront("org.chess");
    for (int i = 0; i < 40; ++i) {
        m_time.advance(1500ms);
        (void)tracker().minutesToday();
    }
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("org.chess", 60)));
    use("com.mail", 900ms);
    use("org.chess", 900ms);
    use("com.mail", 900ms);
    EXPECT_EQ(tracker().minutesToday(), 1);
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("org.chess", 60)));
}

TEST_F(ScreenTime, midnightIsSeenBeforeYesterdayIsReported)
{
    m_time.setCivilTime(nextMidnight - 10min + 10s); // midnight falls between two looks at the clock
    start();
    use("org.chess", 9min + 45s);
    EXPECT_EQ(tracker().minutesToday(), 9);
    m_time.advance(10s);
    EXPECT_EQ(report(),
        (DailyScreenTime{
            .deviceId = "unknown", .date = "2026-01-16T00:00:05Z", .appUsage = std::vector<AppUsageEntry>{}}));
    EXPECT_EQ(tracker().minutesToday(), 0);
    m_time.advance(60s);
    EXPECT_EQ(tracker().minutesToday(), 1);
}

TEST_F(ScreenTime, screensSeeTheNewDayWithoutAReport)
{
    m_time.setCivilTime(nextMidnight - 10min);
    start();
    use("org.chess", 10min + 30s);
    EXPECT_EQ(tracker().todayTotal.value(), 0);
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("org.chess", 30)));
}

TEST_F(ScreenTime, suspendedMachineCountsNothingAndWakesUpToItsOwnDay)
{
    start();
    use("org.chess", 70s);
    m_time.setCivilTime(nextMidnight - 1h);
    EXPECT_EQ(tracker().minutesToday(), 1);
    m_time.advance(20s);
    m_time.setCivilTime(nextMidnight + 8h);
    EXPECT_EQ(tracker().minutesToday(), 0);
    EXPECT_THAT(report().appUsage.value(), IsEmpty());
    m_time.advance(60s);
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("org.chess", 60)));
    m_time.advance(15s);
    EXPECT_THAT(tracker().usageToday(), ElementsAre(Pair("org.chess", 75)));
}

TEST_F(ScreenTime, clockThatIsSetNeitherMakesNorLosesTime)
{
    start();
    use("org.chess", 45s);
    m_time.setCivilTime(midnight + 23h);
    m_time.advance(45s);
    m_time.setCivilTime(midnight + 1h);
    m_time.advance(45s);
    EXPECT_EQ(tracker().minutesToday(), 2);
    EXPECT_THAT(tracker().appUsage.value(), ElementsAre(Pair("org.chess", 135)));
}

TEST_F(ScreenTime, clockSetOverMidnightAndBackStillSeesTheRealMidnight)
{
    for (const bool restarts : {false, true}) {
        m_time.setCivilTime(midnight + 12h);
        start();
        m_time.setCivilTime(nextMidnight + std::chrono::days{3});
        use("org.chess", 60s);
        m_time.setCivilTime(midnight + 12h);
        if (restarts)
            restart();
        m_time.advance(4min);
        EXPECT_EQ(tracker().minutesToday(), 5) << "what was in front stays counted";
        m_time.setCivilTime(nextMidnight + 1s);
        EXPECT_EQ(tracker().minutesToday(), 0);
        kill();
        m_workspace.leaveNothingInFront();
    }
}

TEST_F(ScreenTime, fileOfAnEarlierDayIsForgottenAtOnce)
{
    start();
    use("org.chess", 60min);
    tracker().stopTracking();
    kill();
    m_time.setCivilTime(nextMidnight);
    start();
    EXPECT_EQ(tracker().todayTotal.value(), 0);
    EXPECT_EQ(m_files.at(usageFile), R"({"appUsage":{},"lastReportDate":1768521600.0})");
}

TEST_F(ScreenTime, aDamagedFileNeverMakesAWrongTotal)
{
    const std::string today = R"("lastReportDate":1768435200)";
    const auto of = [&](const std::string& usage) { return R"({"appUsage":{)" + usage + "}," + today + "}"; };

    const std::pair<std::string, std::int64_t> cases[] = {
        {of(R"("a":60,"b":120)"), 3},
        {of(R"("a":86400,"b":3600)"), 1440}, // 25 hours: the clocks went back
        {of(R"("a":86400,"b":3601)"), 0},
        {of(R"("a":120,"b":-60)"), 0},
        {of(R"("a":9223372036854775807,"b":9223372036854775807)"), 0},
        {R"({"appUsage":{"a":60}})", 0},
        {R"({"appUsage":{"a":60},"lastReportDate":0})", 1}, // no day: the present one
        {R"({"appUsage":{"a":60},"lastReportDate":1e300})", 1},
        {R"({"appUsage":{"a":60},"lastReportDate":1})", 0},
        {R"({"appUsage":{"a":60},"lastReportDate":253402300799})", 1}, // in the year 9999
        {of(R"("a":60)").substr(0, 20), 0},
    };

    for (const auto& [text, minutes] : cases) {
        m_files.put(usageFile, text);
        start();
        EXPECT_EQ(tracker().minutesToday(), minutes) << text;
        kill();
    }
}

TEST_F(ScreenTime, aFullDiskCostsNothingOnceThereIsRoom)
{
    start();
    m_files.diskIsFull = true;
    use("org.chess", 10min);
    EXPECT_EQ(tracker().minutesToday(), 10);
    m_files.diskIsFull = false;
    restart();
    EXPECT_EQ(tracker().minutesToday(), 10);
}

TEST_F(ScreenTime, reportHoldsTheFiftyMostUsedAppsAndCountsAll)
{
    m_workspace.installed = {{"app20", "Chess", {}}};
    m_defaults.setString("sg_current_device_id", "desk");
    start();
    for (int app = 60; app >= 10; --app)
        use("app" + std::to_string(app), app == 20 ? 150s : 60s);
    const auto day = report();
    EXPECT_EQ(day.deviceId, "desk");
    EXPECT_EQ(day.date, "2026-01-15T12:52:30Z");
    EXPECT_EQ(day.totalMinutes, 52);
    ASSERT_THAT(day.appUsage.value(), SizeIs(50));
    EXPECT_EQ(day.appUsage->at(0), (AppUsageEntry{.identifier = "app20", .name = "Chess", .minutes = 2}));
    EXPECT_EQ(day.appUsage->at(1), (AppUsageEntry{.identifier = "app10", .name = "app10", .minutes = 1}));
    EXPECT_EQ(day.appUsage->back().identifier, "app59") << "equals stand in the order of their identifiers";
}

TEST_F(ScreenTime, secondsOfSeveralAppsMakeAMinuteThatNoneOfThemHas)
{
    start();
    use("org.chess", 59s);
    use("com.mail", 59s);
    const auto day = report();
    EXPECT_EQ(day.totalMinutes, 1);
    EXPECT_THAT(day.appUsage.value(), IsEmpty());
}

TEST_F(ScreenTime, aFailedReportIsLoggedAndMadeUpForByTheNext)
{
    start();
    use("org.chess", 60s);
    m_backend.accepted = FakeBackend::unreachable();
    (void)report();
    EXPECT_THAT(m_log.lines, ElementsAre("[ScreenTimeTracker] Failed to report: Network error: unreachable"));
    m_backend.accepted = {};
    m_time.advance(60s);
    EXPECT_EQ(report().totalMinutes, 2);
    EXPECT_THAT(m_log.lines, SizeIs(1));
}

} // namespace stillgate
