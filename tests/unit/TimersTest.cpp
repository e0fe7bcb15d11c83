#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class Timers : public AppStateFixture
{};

TEST_F(Timers, heartbeatReportsAndBringsBackTheBudget)
{
    m_backend.answerFirstLoad();
    m_backend.devices = {{device("desk", "macos")}};
    bootstrap();
    m_backend.calls.clear();
    m_backend.budget = ScreenTimeBudget{.dailyLimitMinutes = 45};
    m_time.advance(299s);
    EXPECT_TRUE(m_backend.calls.empty());
    m_time.advance(1s);
    EXPECT_THAT(m_backend.calls, Contains("sendHeartbeat desk 4"));
    EXPECT_EQ(state().budget.value(), ScreenTimeBudget{.dailyLimitMinutes = 45});
    EXPECT_EQ(m_monitor.budget, state().budget.value());

    m_tracker.minutes = 6;
    m_backend.budget = FakeBackend::unreachable();
    m_backend.streak = FakeBackend::unreachable();
    m_time.advance(300s);
    EXPECT_THAT(m_backend.reportedMinutes, ElementsAre(5, 6)) << "never less than five";
    EXPECT_EQ(m_tracker.reports, 2);
    EXPECT_EQ(state().budget.value(), ScreenTimeBudget{.dailyLimitMinutes = 45}) << "stays when it can't be asked";
}

TEST_F(Timers, heartbeatWithoutADeviceReportsAllTheSame)
{
    startOnline();
    m_time.advance(300s);
    EXPECT_THAT(m_backend.calls, Not(Contains(StartsWith("sendHeartbeat"))));
    EXPECT_THAT(m_backend.reportedMinutes, ElementsAre(5));
}

TEST_F(Timers, eachBeatEndsInARefresh)
{
    startOnline();
    m_backend.streak = FakeBackend::unreachable();
    m_time.advance(300s);
    expectFlags(true, true);
    m_backend.streak = Streak{.currentStreakDays = 2};
    m_backend.blockRules = {{rule("r", std::nullopt, {"new.example"})}};
    m_time.advance(300s);
    expectFlags(true, false);
    EXPECT_THAT(m_hostsFile.getBlockedDomains(), Contains("new.example"));
}

TEST_F(Timers, aBeatOfAnEarlierSessionRefreshesNothing)
{
    startOnline();
    m_backend.isSlowToCancel = true;
    m_backend.hold("getScreenTimeBudget");
    m_time.advance(300s);
    const auto released = m_backend.takeHold("getScreenTimeBudget");
    bootstrap();
    m_backend.calls.clear();
    released->happen();
    EXPECT_THAT(m_backend.calls, ElementsAre("cancelled getScreenTimeBudget"));
}

TEST_F(Timers, gatesRiseAndFallWithTheConfiguration)
{
    startOnline();
    m_backend.appConfig = AppConfig{.maintenanceMode = true, .minVersion = "2.0"};
    m_time.advance(300s);
    EXPECT_TRUE(state().isMaintenanceMode && state().requiresForceUpdate);

    m_backend.appConfig = FakeBackend::unreachable();
    m_time.advance(300s);
    EXPECT_TRUE(state().isMaintenanceMode && state().requiresForceUpdate) << "an unreachable server lowers no gate";
    EXPECT_THAT(
        m_log.lines, ElementsAre("[AppState] App config check failed (continuing): Network error: unreachable"));

    m_backend.appConfig = AppConfig{.minVersion = ""};
    m_time.advance(300s);
    EXPECT_FALSE(state().isMaintenanceMode || state().requiresForceUpdate);
    expectFlags(true, false);
}

} // namespace stillgate
