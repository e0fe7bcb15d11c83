#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;

class Cache : public AppStateFixture
{
protected:
    StateCache m_cache{m_files, m_log};
};

TEST_F(Cache, bringsBackWhatASessionNeedsOffline)
{
    SessionData before;
    before.streak = Streak{3, 9, "2026-01-01", std::nullopt};
    auto dated = rule("r", "gaming", {"a.example"});
    dated.createdAt = dateFromISO8601("2026-01-15T08:30:00.123456Z");
    before.blockRules = std::vector{dated};
    before.devices = std::vector{device("d", "macos")};
    before.tasks = std::vector{task("t", "Dishes")};
    before.schedules = std::vector{schedule("Evenings", true)};
    before.sharingConnections = std::vector{controlledConnection("permanent")};
    before.guardianRulesForMe = std::vector{guardianRule("news", {{"b.example"}})};
    before.currentUser = std::optional{SGUser{.id = "u", .email = "e", .displayName = "Ada"}};
    before.knowsGuardian = true;
    m_cache.save(before);

    SessionData after;
    EXPECT_TRUE(m_cache.load(after));
    EXPECT_EQ(after.streak.value(), before.streak.value());
    EXPECT_EQ(after.blockRules.value(), before.blockRules.value());
    EXPECT_EQ(after.devices.value(), before.devices.value());
    EXPECT_EQ(after.tasks.value(), before.tasks.value());
    EXPECT_EQ(after.schedules.value(), before.schedules.value());
    EXPECT_EQ(after.sharingConnections.value(), before.sharingConnections.value());
    EXPECT_EQ(after.guardianRulesForMe.value(), before.guardianRulesForMe.value());
    EXPECT_EQ(after.budget.value(), std::nullopt);
    EXPECT_EQ(after.currentUser.value(), std::nullopt);
}

TEST_F(Cache, guardiansStrictModeSurvivesARestartWithoutNetwork)
{
    m_backend.connections = {{controlledConnection("permanent")}};
    m_backend.effectiveRules = guarded("guarded.example");
    startOnline();
    await(state().refreshData());
    restart();
    m_backend.streak = FakeBackend::unreachable();
    m_monitor.configuration = {};
    bootstrap();
    EXPECT_EQ(m_monitor.configuration.guardianFlexibilityMode, "permanent");
    EXPECT_TRUE(m_monitor.configuration.blockedDomains.contains("guarded.example"));
}

TEST_F(Cache, nextAccountDoesNotInheritTheGuardian)
{
    m_backend.connections = {{controlledConnection("permanent")}};
    startOnline();
    await(state().refreshData());
    state().logout();
    m_backend.hasStoredTokens = true;
    m_backend.connections = std::vector<SharingConnection>{};
    bootstrap();
    restart();
    m_backend.streak = FakeBackend::unreachable();
    bootstrap();
    EXPECT_EQ(m_monitor.configuration.guardianFlexibilityMode, "flexible");
}

TEST_F(Cache, fileThatDoesNotDecodeIsLoggedAndRestoresNothing)
{
    const std::string whole = cachedSession;
    for (const auto& broken : {whole.substr(0, whole.size() / 2), std::string{}, std::string{R"({"streak":1})"}}) {
        m_log.lines.clear();
        m_files.put(cacheFile, broken);
        SessionData session;
        EXPECT_TRUE(m_cache.load(session));
        EXPECT_THAT(m_log.lines, ElementsAre(StartsWith("[AppState] Cache read failed: CachedState")));
        EXPECT_THAT(session.blockRules.value(), IsEmpty());
        EXPECT_EQ(m_files.at(cacheFile), broken) << "it stays, for whoever can make sense of it";
    }
}

TEST_F(Cache, brokenFileStillLeadsToACompile)
{
    m_files.put(cacheFile, "{}");
    bootstrap();
    EXPECT_EQ(m_files.at(configFile), R"({"domains":[],"categories":[]})");
    expectFlags(true, true);
}

TEST_F(Cache, missingOrUnreadableFileIsPassedOverInSilence)
{
    SessionData session;
    EXPECT_FALSE(m_cache.load(session));
    m_files.put(cacheFile, cachedSession);
    m_files.unreadable.insert(cacheFile);
    EXPECT_FALSE(m_cache.load(session));
    EXPECT_THAT(m_log.lines, IsEmpty());
}

TEST_F(Cache, failedWriteIsLoggedAndKeepsTheOldFile)
{
    m_files.put(cacheFile, cachedSession);
    m_files.diskIsFull = true;
    startOnline();
    EXPECT_THAT(m_log.lines,
        Contains(std::string{"[AppState] Cache write failed: write "} + cacheFile + ": No space left on device"));
    EXPECT_EQ(m_files.at(cacheFile), cachedSession);
    expectFlags(true, false);
}

} // namespace stillgate
