#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class Bootstrap : public AppStateFixture
{
protected:
    /// Held, it keeps the refresh that follows a start from hiding what the start has done.
    static constexpr auto firstOfRefreshAlone = "getTasks assignee";
};

TEST_F(Bootstrap, firstRunAsksNothing)
{
    m_defaults.setBoolean("sg_onboarding_complete", false);
    startOnline();
    EXPECT_TRUE(state().isOnboarding);
    EXPECT_THAT(m_backend.calls, IsEmpty());
    expectFlags(false, false);
}

TEST_F(Bootstrap, gatesComeBeforeTheSession)
{
    m_backend.appConfig = AppConfig{.maintenanceMode = true, .maintenanceMessage = "Back at nine"};
    startOnline();
    EXPECT_TRUE(state().isMaintenanceMode);
    EXPECT_EQ(state().maintenanceMessage.value(), "Back at nine");
    EXPECT_THAT(m_backend.calls, ElementsAre("getAppConfig"));
    expectFlags(false, false);

    m_backend.appConfig = AppConfig{.minVersion = "1.5", .forceUpdateUrl = "https://stillgate.example/get"};
    bootstrap();
    EXPECT_FALSE(state().isMaintenanceMode);
    EXPECT_TRUE(state().requiresForceUpdate);
    EXPECT_EQ(state().requiredVersion.value(), "1.5");
    EXPECT_THAT(m_backend.calls, Not(Contains("loadTokens")));
    EXPECT_FALSE(areTimersRunning());
}

TEST_F(Bootstrap, hangingConfigurationCheckHoldsTheStartForTwoSecondsOnly)
{
    m_backend.answerFirstLoad();
    m_backend.appConfig = AppConfig{.maintenanceMode = true};
    m_backend.hold("getAppConfig");
    const Awaited started{state().bootstrap()};
    m_time.advance(1999ms);
    EXPECT_FALSE(started.hasEnded());
    m_time.advance(1ms);
    EXPECT_TRUE(started.hasEnded());
    expectFlags(true, false);

    m_backend.release("getAppConfig");
    EXPECT_TRUE(state().isMaintenanceMode) << "a later answer counts when it comes";
}

TEST_F(Bootstrap, logoutDuringTheConfigurationCheckIsNotForgotten)
{
    m_backend.answerFirstLoad();
    m_backend.hold("getAppConfig");
    const Awaited started{state().bootstrap()};
    state().logout();
    m_backend.hasStoredTokens = true; // as while the sign-out still waits for the proxy
    m_backend.release("getAppConfig");
    EXPECT_TRUE(started.hasEnded());
    expectFlags(false, false);
    EXPECT_EQ(m_time.pendingTimers(), 0U);
}

TEST_F(Bootstrap, withoutTokensNobodyIsSignedIn)
{
    m_files.put(cacheFile, cachedSession);
    m_backend.hasStoredTokens = false;
    startOnline();
    expectFlags(false, false);
    EXPECT_THAT(blockedNames(), IsEmpty());
    EXPECT_THAT(m_backend.calls, ElementsAre("getAppConfig", "loadTokens"));
}

TEST_F(Bootstrap, blocksAreUpFromTheCacheBeforeTheFirstAnswer)
{
    m_files.put(cacheFile, cachedSession);
    m_backend.hold("getStreak");
    const Awaited started{state().bootstrap()};
    EXPECT_THAT(blockedNames(), Contains("cached.example"));
    EXPECT_EQ(m_files.at(configFile), R"({"domains":["cached.example"],"categories":[]})");
    EXPECT_EQ(m_monitor.budget, state().budget.value());
    EXPECT_EQ(state().currentDeviceId, "cached-device");
    EXPECT_EQ(m_defaults.string("sg_current_device_id"), "cached-device") << "for the usage reports";
    EXPECT_FALSE(state().isAuthenticated);
    m_backend.release("getStreak");
    EXPECT_TRUE(started.hasEnded());
}

TEST_F(Bootstrap, onlineStartLoadsEverythingInOrder)
{
    m_backend.answerFirstLoad();
    m_backend.blockRules = {{rule("r", std::nullopt, {"fresh.example"})}};
    m_backend.devices = {{device("phone", "ios"), device("desk", "macos")}};
    m_backend.schedules = {{schedule("Evenings", true)}};
    m_backend.tasks[""] = {{task("t", "Dishes")}};
    m_backend.connections = {{controlledConnection("permanent")}};
    m_backend.budget = ScreenTimeBudget{.dailyLimitMinutes = 90};
    m_backend.me = SGUser{.id = "u1", .email = "ada@example.com", .displayName = "Ada"};
    m_backend.sharingCode = SharingCode{.code = "ABC123"};
    m_backend.hold(firstOfRefreshAlone);
    bootstrap();

    EXPECT_THAT(m_backend.calls,
        ElementsAre("getAppConfig", "loadTokens", "getStreak", "getBlockRules", "getDevices", "getSchedules",
            "getTasks ", "getScreenTimeBudget", "getMe", "getMySharingCode", "getSharingConnections", "getStreak",
            "getBlockRules", "getDevices", "getSchedules", "getScreenTimeBudget", "getSharingConnections",
            firstOfRefreshAlone));
    expectFlags(true, false);
    EXPECT_EQ(m_defaults.string("sg_current_device_id"), "desk");
    EXPECT_THAT(blockedNames(), Contains("www.fresh.example"));
    EXPECT_EQ(m_monitor.configuration.activeSession, "Evenings");
    EXPECT_EQ(m_monitor.budget->dailyLimitMinutes, 90);
    EXPECT_THAT(state().tasks.value(), SizeIs(1));
    EXPECT_THAT(state().connections.value(), SizeIs(1));
    EXPECT_EQ(state().sharingCode.value(), "ABC123");
    EXPECT_TRUE(m_files.at(cacheFile).contains(R"("userName":"Ada")"));
    EXPECT_TRUE(areTimersRunning());
    EXPECT_TRUE(m_tracker.isTracking);
    m_backend.release(firstOfRefreshAlone);
}

TEST_F(Bootstrap, laterCallsMayFail)
{
    m_files.put(cacheFile, cachedSession);
    m_backend.answerFirstLoad();
    state().sharingCode = std::optional<std::string>{"KEPT"};
    state().tasks = std::vector{task("old", "old")};
    m_backend.hold(firstOfRefreshAlone);
    bootstrap();
    expectFlags(true, false);
    EXPECT_EQ(state().currentUser.value(), std::nullopt);
    EXPECT_EQ(state().budget.value(), std::nullopt);
    EXPECT_THAT(state().tasks.value(), IsEmpty());
    EXPECT_EQ(state().sharingCode.value(), "KEPT");
    EXPECT_EQ(state().currentDeviceId, std::nullopt);
    m_backend.release(firstOfRefreshAlone);
    EXPECT_THAT(m_log.lines, IsEmpty());
}

TEST_F(Bootstrap, unreachableBackendMeansOfflineOnCachedData)
{
    m_files.put(cacheFile, cachedSession);
    m_backend.answerFirstLoad();
    m_backend.devices = FakeBackend::unreachable();
    bootstrap();
    expectFlags(true, true);
    EXPECT_EQ(state().streak.value().currentStreakDays, 7) << "the cache replaces the fresh answers";
    EXPECT_EQ(state().blockRules.value().size(), 1U);
    EXPECT_THAT(m_log.lines,
        ElementsAre("[AppState] getDevices failed: Network error: unreachable",
            "[AppState] Bootstrap failed (offline): Network error: unreachable"));
    EXPECT_TRUE(areTimersRunning());
    EXPECT_TRUE(m_tracker.isTracking);
    EXPECT_EQ(m_files.at(cacheFile), cachedSession) << "the cache is not written";
}

TEST_F(Bootstrap, everyFailureButUnauthorizedIsOffline)
{
    const std::pair<Error, bool> cases[] = {
        {APIError::unauthorized(), false},
        {APIError::server(500, "Unknown error"), true},
        {APIError::invalidResponse(), true},
        {DecodingFailure{"Streak.currentStreakDays", "required, but missing"}, true},
    };

    for (const auto& [error, isOffline] : cases) {
        restart();
        m_backend.streak = std::unexpected{error};
        bootstrap();
        expectFlags(/*authenticated*/ isOffline, isOffline);
        EXPECT_EQ(areTimersRunning(), isOffline) << error.description();
    }
    EXPECT_EQ(m_log.lines.front(), "[AppState] getStreak failed: Session expired");
}

TEST_F(Bootstrap, logoutDuringTheStartIsTheLastWord)
{
    m_backend.answerFirstLoad();
    m_backend.blockRules = {{rule("r", std::nullopt, {"late.example"})}};
    m_backend.isSlowToCancel = true;
    for (const auto* call : {"getStreak", "getDevices", "getMe"}) {
        restart();
        m_backend.hasStoredTokens = true;
        m_backend.hold(call);
        const Awaited started{state().bootstrap()};
        state().logout();
        m_backend.release(call);
        EXPECT_TRUE(started.hasEnded()) << call;
        expectFlags(false, false);
        EXPECT_THAT(state().blockRules.value(), IsEmpty()) << call;
        EXPECT_THAT(blockedNames(), IsEmpty()) << call;
        EXPECT_EQ(m_time.pendingTimers(), 0U) << call;
        EXPECT_FALSE(m_files.contains(cacheFile)) << call;
    }
    EXPECT_THAT(m_log.lines, IsEmpty());
}

class Logout : public AppStateFixture
{};

TEST_F(Logout, nextSessionBlocksAgain)
{
    for (const bool isOnline : {true, false}) {
        m_backend.hasStoredTokens = true;
        startOnline();
        state().logout();
        m_backend.hasStoredTokens = true;
        if (!isOnline)
            m_backend.streak = FakeBackend::unreachable();
        bootstrap();
        EXPECT_TRUE(state().isBlockingActive) << isOnline;
        EXPECT_FALSE(state().isStarting);
    }
}

TEST_F(Logout, leavesNothingOfTheSession)
{
    m_backend.answerFirstLoad();
    m_backend.blockRules = {{rule("r", std::nullopt, {"a.example"})}};
    m_backend.connections = {{controlledConnection("permanent")}};
    bootstrap();
    await(state().refreshData());
    ASSERT_TRUE(m_files.contains(cacheFile));

    state().logout();
    expectFlags(false, false);
    EXPECT_FALSE(state().isOnboarding);
    EXPECT_FALSE(state().isBlockingActive);
    EXPECT_THAT(state().blockRules.value(), IsEmpty());
    EXPECT_THAT(state().connections.value(), IsEmpty());
    EXPECT_EQ(state().streak.value(), Streak{});
    EXPECT_EQ(state().sharingConnections.value().size(), 1U) << "stays as it is";
    EXPECT_EQ(m_files.at(hostsPath), "127.0.0.1 localhost\n");
    EXPECT_FALSE(m_files.contains(cacheFile));
    EXPECT_TRUE(m_monitor.isStopped);
    EXPECT_FALSE(m_tracker.isTracking);
    EXPECT_EQ(m_dnsProxy.disabled, 1);
    EXPECT_FALSE(m_backend.authenticated) << "also when the proxy can't be switched off";
    EXPECT_EQ(m_time.pendingTimers(), 0U);

    m_backend.hasStoredTokens = true;
    bootstrap();
    EXPECT_THAT(blockedNames(), Contains("a.example")) << "signing in again writes the block anew";
}

TEST_F(Logout, followsTheNotificationsOnceTheirPosterIsDone)
{
    for (const auto name : {sgForceLogout, sgCertificatePinningFailed}) {
        restart();
        m_backend.hasStoredTokens = true;
        startOnline();
        m_notifications.post(name);
        expectFlags(true, false);
        m_time.advance(0ms);
        expectFlags(false, false);
    }
    EXPECT_THAT(m_log.lines, ElementsAre("[AppState] Certificate pinning failed — forcing logout for safety"));
    restart();
    m_notifications.post(sgForceLogout); // nobody is there any more
}

} // namespace stillgate
