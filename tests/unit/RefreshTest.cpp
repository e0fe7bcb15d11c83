#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;

class Refresh : public AppStateFixture
{
protected:
    void refresh() { await(state().refreshData()); }
};

TEST_F(Refresh, doesNothingWhenSignedOut)
{
    refresh();
    EXPECT_THAT(m_backend.calls, IsEmpty());
}

TEST_F(Refresh, loadsTheFirstThreeAtTheSameTimeAndTheRestInOrder)
{
    startOnline();
    m_backend.calls.clear();
    m_backend.hold("getStreak");
    const Awaited refreshed{state().refreshData()};
    EXPECT_THAT(m_backend.calls, ElementsAre("getStreak", "getBlockRules", "getDevices"));
    m_backend.release("getStreak");
    EXPECT_TRUE(refreshed.hasEnded());
    EXPECT_THAT(m_backend.calls,
        ElementsAre("getStreak", "getBlockRules", "getDevices", "getSchedules", "getScreenTimeBudget",
            "getSharingConnections", "getTasks assignee", "getTasks assigner", "getEffectiveRules"));
}

TEST_F(Refresh, takesWhatTheServerHas)
{
    startOnline();
    m_backend.blockRules = {{rule("r", std::nullopt, {"new.example"})}};
    m_backend.connections = {{controlledConnection("permanent")}};
    m_backend.tasks["assignee"] = {{task("1", "mine")}};
    m_backend.tasks["assigner"] = {{task("1", "given"), task("2", "given")}};
    m_backend.effectiveRules = guarded("guarded.example");
    refresh();
    EXPECT_THAT(blockedNames(), Contains("new.example"));
    EXPECT_EQ(state().sharingConnections.value(), state().connections.value());
    EXPECT_EQ(m_monitor.configuration.guardianFlexibilityMode, "permanent");
    EXPECT_TRUE(m_monitor.configuration.blockedDomains.contains("guarded.example"));
    EXPECT_EQ(state().tasks.value().size(), 2U);
    EXPECT_EQ(state().tasks.value().front().title, "mine");

    m_backend.effectiveRules = FakeBackend::unreachable();
    refresh();
    EXPECT_EQ(state().guardianRulesForMe.value().size(), 1U) << "stays when it can't be loaded";
    m_backend.effectiveRules = EffectiveRulesResponse{};
    refresh();
    EXPECT_THAT(state().guardianRulesForMe.value(), IsEmpty());
}

TEST_F(Refresh, followsAnOnlineStart)
{
    m_backend.effectiveRules = guarded("guarded.example");
    m_backend.connections = {{controlledConnection("permanent")}};
    m_backend.streak = FakeBackend::unreachable();
    bootstrap();
    EXPECT_THAT(m_backend.calls, Not(Contains("getEffectiveRules"))) << "what is offline has nothing to ask";
    startOnline();
    EXPECT_TRUE(m_monitor.configuration.blockedDomains.contains("guarded.example"));
}

TEST_F(Refresh, firstFailureCancelsTheOthersAndKeepsWhatWasTaken)
{
    startOnline();
    const auto cache = m_files.at(cacheFile);
    const auto compiles = m_monitor.configurations;
    m_backend.streak = Streak{.currentStreakDays = 12};
    m_backend.blockRules = failure(APIError::server(503, "Too busy"));
    m_backend.hold("getDevices");
    refresh();
    EXPECT_THAT(m_backend.calls, Contains("cancelled getDevices"));
    expectFlags(true, true);
    EXPECT_EQ(state().streak.value().currentStreakDays, 12);
    EXPECT_THAT(m_log.lines, ElementsAre("[AppState] Refresh failed: Too busy"));
    EXPECT_EQ(m_files.at(cacheFile), cache);
    EXPECT_EQ(m_monitor.configurations, compiles);

    m_backend.blockRules = std::vector<BlockRule>{};
    m_backend.release("getDevices");
    refresh();
    expectFlags(true, false);
}

TEST_F(Refresh, ofAnEarlierSessionChangesNothing)
{
    startOnline();
    m_backend.isSlowToCancel = true;
    m_backend.hold("getSchedules");
    const Awaited old{state().refreshData()};
    const auto released = m_backend.takeHold("getSchedules");
    m_backend.connections = {{controlledConnection("permanent")}};
    bootstrap();
    const auto compiles = m_monitor.configurations;
    released->happen();
    EXPECT_TRUE(old.hasEnded());
    EXPECT_EQ(m_monitor.configurations, compiles);
    EXPECT_EQ(state().connections.value().size(), 1U);

    state().logout();
    EXPECT_FALSE(m_files.contains(cacheFile));
}

TEST_F(Refresh, logoutMeanwhileIsTheLastWord)
{
    startOnline();
    m_backend.connections = {{controlledConnection("permanent")}};
    refresh();
    m_backend.isSlowToCancel = true;
    for (const auto* call : {"getDevices", "getSchedules", "getEffectiveRules"}) {
        m_backend.hasStoredTokens = true;
        bootstrap();
        m_backend.hold(call);
        const Awaited refreshed{state().refreshData()};
        state().logout();
        m_backend.release(call);
        EXPECT_TRUE(refreshed.hasEnded()) << call;
        expectFlags(false, false);
        EXPECT_FALSE(m_files.contains(cacheFile)) << call;
        EXPECT_EQ(state().sharingConnections.value().size(), 1U) << call;
    }
    EXPECT_THAT(m_log.lines, IsEmpty());
}

} // namespace stillgate
