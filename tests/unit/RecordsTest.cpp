#include "Models/Account.h"
#include "Models/ScreenTime.h"
#include "Models/Version.h"
#include "tests/support/Samples.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using testing::ElementsAre;

TEST(Records, categoryOfARuleInWords)
{
    auto custom = rule("r", "custom");
    EXPECT_EQ(custom.categoryDisplayName(), "Custom");
    custom.customName = "Evenings";
    EXPECT_EQ(custom.categoryDisplayName(), "Evenings");
    EXPECT_EQ(rule("r", "gambling").categoryDisplayName(), "Gambling & Betting");
    EXPECT_EQ(rule("r", "Gambling").categoryDisplayName(), "Gambling");
    EXPECT_EQ(rule("r", std::nullopt).categoryDisplayName(), "Unknown");
}

TEST(Records, ownDeviceIsTheFirstOfThePlatform)
{
    EXPECT_EQ(ownDeviceId({device("a", "ios"), device("b", "macos"), device("c", "macos")}), "b");
    EXPECT_EQ(ownDeviceId({device("a", "macOS")}), std::nullopt);
}

TEST(Records, mergedTasksKeepTheAssigneesCopyAndTheOrder)
{
    const auto merged = mergedTasks(
        {task("1", "mine"), task("2", "mine")}, {task("3", "given"), task("1", "given"), task("3", "given again")});
    std::vector<std::string> titles;
    for (const auto& task : merged)
        titles.push_back(task.id + " " + task.title);
    EXPECT_THAT(titles, ElementsAre("1 mine", "2 mine", "3 given", "3 given again"));
}

TEST(Records, onlyGuardiansRulesBecomeGuardianRules)
{
    EffectiveRulesResponse response;
    response.rules = {
        {.id = "own", .userId = "u1", .enabled = true, ._source = "user"},
        {.id = "g1",
            .userId = "u1",
            .category = "gaming",
            .enabled = true,
            .customDomains = {{"a.example"}},
            ._source = "guardian",
            ._connectionId = "c1"},
        {.id = "g2", .userId = "u1", .enabled = false, ._source = "guardian"},
    };
    auto first = guardianRule("gaming", {{"a.example"}});
    const auto rules = guardianRules(response);
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules.at(0), first);
    EXPECT_EQ(rules.at(1).connectionId, "");
    EXPECT_EQ(rules.at(1).customDomains, std::nullopt);
}

TEST(Records, dayOfAnUnknownDeviceHasAnIdentity)
{
    EXPECT_EQ((DailyScreenTime{.date = "2026-01-15"}).id(), "unknown-2026-01-15");
    EXPECT_EQ((DailyScreenTime{.deviceId = "d1", .date = "2026-01-15"}).id(), "d1-2026-01-15");
}

TEST(Version, comparesNumberByNumber)
{
    const struct
    {
        const char* a;
        const char* b;
        bool isLess;
    } cases[] = {
        {"1.9.9", "1.10.0", true},
        {"1.10.0", "1.9.9", false},
        {"1.2", "1.2.0", false},
        {"1.2.0", "1.2", false},
        {"1.0.0-beta", "1.0.0", false},
        {"1..2", "1.3", true},
        {"1.x.3", "1.3", false},
        {"", "1", true},
        {"", "", false},
        {"+1.-1", "1", true},
        {"+-1", "0", false},
        {"1.99999999999999999999", "1.0.1", true},
    };

    for (const auto& [a, b, isLess] : cases)
        EXPECT_EQ(isVersion(a, /*lessThan*/ b), isLess) << a << " < " << b;
}

} // namespace stillgate
