#include "Models/Account.h"
#include "Models/Version.h"
#include "tests/support/Matchers.h"
#include "tests/support/Samples.h"

namespace stillgate
{

using namespace test;

TEST(Records, categoryOfARuleInWords)
{
    auto custom = rule("r", "custom");
    custom.customName = "Evenings";
    EXPECT_EQ(custom.categoryDisplayName(), "Evenings");
    EXPECT_EQ(rule("r", "Gambling").categoryDisplayName(), "Gambling") << "one that isn't known";
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
    auto response = guarded("a.example");
    response.rules.front()._connectionId = "c1";
    response.rules.push_back({.id = "own", .userId = "u1", .enabled = true, ._source = "user"});
    auto expected = guardianRule("gaming", {{"a.example"}});
    expected.id = "g";
    EXPECT_THAT(guardianRules(response), ElementsAre(expected));
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
