#include "Blocking/BlockCompiler.h"

#include "Blocking/Budget.h"
#include "tests/support/Matchers.h"
#include "tests/support/Samples.h"

#include <limits>

namespace stillgate
{

using namespace test;
using testing::UnorderedElementsAre;

class BlockCompiler : public testing::Test
{
protected:
    CompiledBlocks compile()
    {
        return compileBlocks({m_rules, m_guardianRules, m_schedules, m_connections, m_budget},
            [this](const std::string& category) -> std::span<const std::string> {
                return category == "gambling" ? m_gambling : std::span<const std::string>{};
            });
    }

    std::vector<BlockRule> m_rules;
    std::vector<GuardianBlockRule> m_guardianRules;
    std::vector<BlockSchedule> m_schedules;
    std::vector<SharingConnection> m_connections;
    std::optional<ScreenTimeBudget> m_budget;
    std::vector<std::string> m_gambling{"bet.example", "Poker.example"};
};

TEST_F(BlockCompiler, noEnabledRuleBlocksNothing)
{
    m_rules = {rule("r", "gambling", {"a.example"})};
    m_rules.front().enabled = false;
    m_rules.front().customApps = apps({"app"});
    m_schedules = {schedule("Off", false)};
    const auto blocks = compile();
    EXPECT_THAT(blocks.hostsDomains, IsEmpty());
    EXPECT_EQ(blocks.dnsProxy, BlockedConfig{});
    ProcessMonitorConfiguration nothing;
    nothing.blockedProcesses.clear();
    EXPECT_EQ(blocks.monitor, nothing);
}

TEST_F(BlockCompiler, sitesOfOwnRulesReachHostsProxyAndMonitor)
{
    m_rules = {
        rule("1", "gambling", {"Mixed.Example", "bet.example"}),
        rule("2", "custom", {"Mixed.Example", "mixed.example", "plain.example"}),
        rule("3", std::nullopt, {"none.example"}),
        rule("4", "gambling"),
    };
    m_rules.front().excludedDomains = {"bet.example"};
    const auto blocks = compile();
    EXPECT_THAT(blocks.hostsDomains,
        ElementsAre("Mixed.Example", "bet.example", "mixed.example", "plain.example", "none.example", "Poker.example"));
    EXPECT_EQ(blocks.dnsProxy.domains, blocks.hostsDomains);
    EXPECT_THAT(blocks.dnsProxy.categories, ElementsAre("gambling", "custom", "gambling"));
    EXPECT_THAT(blocks.monitor.blockedDomains,
        UnorderedElementsAre("mixed.example", "bet.example", "plain.example", "none.example", "poker.example"));
    EXPECT_THAT(blocks.monitor.domainCategories,
        UnorderedElementsAre(
            Pair("mixed.example", "custom"), Pair("bet.example", "gambling"), Pair("plain.example", "custom")))
        << "a later rule wins, and domains of a block list have no entry";
}

TEST_F(BlockCompiler, appsOfThisPlatformReachTheMonitor)
{
    m_rules = {rule("1", "gaming"), rule("2", std::nullopt)};
    m_rules.at(0).customApps = apps({"Com.Game", "com.chat"});
    m_rules.at(0).customApps->at(ownPlatform).push_back({.packageName = "android.game", .name = "no identifier"});
    m_rules.at(0).customApps->emplace("windows", std::vector<AppInfo>{{.bundleId = "other", .name = "other"}});
    m_rules.at(1).customApps = apps({"com.CHAT"});
    m_rules.at(1).unblockPolicy = "permanent";
    const auto monitor = compile().monitor;
    EXPECT_THAT(monitor.customBlockedBundleIds, UnorderedElementsAre("com.game", "com.chat"));
    EXPECT_THAT(
        monitor.bundleIdPolicies, UnorderedElementsAre(Pair("com.game", "flexible"), Pair("com.chat", "permanent")));
    EXPECT_THAT(
        monitor.bundleIdCategories, UnorderedElementsAre(Pair("com.game", "gaming"), Pair("com.chat", "gaming")));
}

TEST_F(BlockCompiler, guardianRulesReachTheMonitorAlone)
{
    m_rules = {rule("1", "gaming")};
    m_rules.front().customApps = apps({"com.game"});
    m_guardianRules = {
        guardianRule("gambling", {{"Casino.example"}}),
        guardianRule(std::nullopt, {{"uncategorised.example"}}),
        guardianRule("news", std::nullopt),
        guardianRule("adult", {{"disabled.example"}}),
    };
    m_guardianRules.at(0).customApps = apps({"com.game", "com.dice"});
    m_guardianRules.at(3).enabled = false;
    const auto blocks = compile();
    EXPECT_THAT(blocks.hostsDomains, IsEmpty());
    EXPECT_THAT(blocks.dnsProxy.domains, IsEmpty());
    EXPECT_THAT(blocks.dnsProxy.categories, ElementsAre("gaming"));
    EXPECT_THAT(blocks.monitor.blockedDomains, UnorderedElementsAre("casino.example"));
    EXPECT_THAT(blocks.monitor.domainCategories, UnorderedElementsAre(Pair("casino.example", "gambling")));
    EXPECT_THAT(blocks.monitor.customBlockedBundleIds, UnorderedElementsAre("com.game", "com.dice"));
    EXPECT_THAT(blocks.monitor.bundleIdPolicies, UnorderedElementsAre(Pair("com.game", "flexible")))
        << "the own rule's policy stays";
    EXPECT_THAT(blocks.monitor.bundleIdCategories,
        UnorderedElementsAre(Pair("com.game", "gambling"), Pair("com.dice", "gambling")));
}

TEST_F(BlockCompiler, firstEnabledScheduleNamesTheSession)
{
    m_schedules = {schedule("Off", false), schedule("Evenings", true), schedule("Later", true)};
    EXPECT_EQ(compile().monitor.activeSession, "Evenings");
}

TEST_F(BlockCompiler, firstConnectionInWhichTheUserIsControlledCounts)
{
    auto inactive = controlledConnection("permanent");
    inactive.isActive = false;
    auto guardianSide = controlledConnection("flexible");
    guardianSide.role = "controller";
    m_connections = {guardianSide, inactive, controlledConnection("flexible")};
    const auto monitor = compile().monitor;
    EXPECT_EQ(monitor.guardianFlexibilityMode, "permanent");
    EXPECT_EQ(monitor.guardianMessage, "Homework first");
    EXPECT_EQ(monitor.guardianIllustrationKey, "ill-forest");

    m_connections = {controlledConnection(std::nullopt)};
    EXPECT_EQ(compile().monitor.guardianFlexibilityMode, "flexible");
}

TEST(Budget, remainingMinutesDecideWhetherItIsExceeded)
{
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    constexpr auto least = std::numeric_limits<std::int64_t>::min();

    const std::pair<std::optional<ScreenTimeBudget>, BudgetState> cases[] = {
        {std::nullopt, {false, -1}},
        {{{0, 15, 75}}, {false, -1}},
        {{{60, 15, 75}}, {true, 0}},
        {{{60, 15, 74}}, {false, 1}},
        {{{60, 0, 90}}, {true, -30}},
        {{{most, most, 0}}, {false, most}},
        {{{1, 0, least}}, {false, most}},
        {{{1, least, most}}, {true, least}},
    };

    for (const auto& [budget, expected] : cases)
        EXPECT_EQ(budgetState(budget), expected);
}

} // namespace stillgate
