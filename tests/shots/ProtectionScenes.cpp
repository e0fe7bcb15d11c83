#include "Views/Protection/ProtectionViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;

constexpr int protectionTab = 3;

BlockRule rule(const std::string& id, const std::string& category, const std::string& policy)
{
    return {.id = id, .category = category, .enabled = true, .unblockPolicy = policy};
}

std::vector<BlockRule> everyKindOfRule()
{
    auto games = rule("r2", "gaming", "permanent");
    games.customApps =
        AppsByPlatform{{ownPlatform, {{.bundleId = "a", .name = "Chess"}, {.bundleId = "b", .name = "Go"}}}};
    auto shops = rule("r3", "shopping", "cooldown");
    shops.cooldownHours = 24;
    shops.customDomains = {"shop.example", "auction.example", "shoes.example", "books.example", "toys.example",
        "garden.example", "tools.example", "tea.example", "cheese.example", "hats.example"};
    auto custom = rule("r4", "custom", "group_approval");
    custom.customName = "Everything that keeps me from writing my thesis before the end of the summer";
    custom.customDomains = {"a-very-long-name-that-nobody-would-ever-want-to-type-into-an-address-bar.example"};
    auto empty = rule("r5", "custom", "timed");
    empty.customName = "Nothing yet";
    return {rule("r1", "social_media", "flexible"), games, shops, custom, empty};
}

ProtectionViewModel& openTab(Stage& stage)
{
    stage.signIn();
    stage.monitor.isMonitoring = true;
    stage.monitor.blockedAppAttempts = 12;
    stage.openSettings(protectionTab);
    return stage.tabViewModel<ProtectionViewModel>();
}

void installApps(Stage& stage, int count)
{
    for (int number = 1; number <= count; ++number)
        stage.workspace.installed.push_back({.bundleIdentifier = "org.example.App" + std::to_string(number),
            .name = number == 2 ? "An App With a Name That Goes On and On Until There Is No Room Left for It at All"
                                : "App " + std::to_string(number)});
}

void none(Stage& stage)
{
    openTab(stage);
}

void every(Stage& stage)
{
    stage.state.blockRules = everyKindOfRule();
    openTab(stage);
}

void expanded(Stage& stage)
{
    every(stage);
    stage.expandAllRows();
}

void quickBlockRuns(Stage& stage)
{
    stage.state.blockRules = everyKindOfRule();
    stage.monitor.activeQuickBlock =
        QuickBlockSession{.bundleIds = {"a", "b"}, .expiresAt = stage.time.now() + 29min, .durationMinutes = 30};
    openTab(stage);
}

void thousand(Stage& stage)
{
    std::vector<BlockRule> rules;
    for (int number = 0; number < 1000; ++number)
        rules.push_back(rule("r" + std::to_string(number), "news", "flexible"));
    stage.state.blockRules = std::move(rules);
    openTab(stage);
}

void askToDelete(Stage& stage)
{
    stage.state.blockRules = everyKindOfRule();
    openTab(stage).askToDelete("r1");
}

CreateRuleViewModel& openCreateRule(Stage& stage, int apps = 40)
{
    installApps(stage, apps);
    stage.state.blockRules = everyKindOfRule();
    auto& tab = openTab(stage);
    tab.openCreateRule();
    return *tab.createRule();
}

void createRuleCategory(Stage& stage)
{
    openCreateRule(stage);
}

void createRuleName(Stage& stage)
{
    openCreateRule(stage);
    stage.press("onboarding.categories.custom");
}

void createRuleApps(Stage& stage)
{
    auto& sheet = openCreateRule(stage);
    sheet.goOn();
    sheet.picker()->toggle("org.example.App1");
    sheet.picker()->toggle("org.example.App3");
}

void createRuleThousandApps(Stage& stage)
{
    openCreateRule(stage, 1000).goOn();
}

void createRuleNoApps(Stage& stage)
{
    openCreateRule(stage, 0).goOn();
}

void createRuleSites(Stage& stage)
{
    auto& sheet = openCreateRule(stage);
    sheet.goOn();
    sheet.selectBlockMode(1);
}

void createRulePolicy(Stage& stage)
{
    auto& sheet = openCreateRule(stage);
    sheet.selectBlockMode(1);
    sheet.goOn();
    sheet.goOn();
    sheet.selectPolicy(1);
}

QuickBlockViewModel& openQuickBlock(Stage& stage)
{
    installApps(stage, 40);
    auto& tab = openTab(stage);
    tab.openQuickBlock();
    return *tab.quickBlock();
}

void quickBlockApps(Stage& stage)
{
    openQuickBlock(stage);
}

void quickBlockSites(Stage& stage)
{
    auto& sheet = openQuickBlock(stage);
    sheet.selectTab(1);
    sheet.setDomainInput("news.example\nvideo.example");
}

constexpr Scene scenes[] = {
    {"protection", "none", none},
    {"protection", "every", every},
    {"protection", "expanded", expanded},
    {"protection", "quick-block-runs", quickBlockRuns},
    {"protection", "thousand", thousand},
    {"protection", "ask-to-delete", askToDelete},
    {"create-rule", "category", createRuleCategory},
    {"create-rule", "name", createRuleName},
    {"create-rule", "apps", createRuleApps},
    {"create-rule", "thousand-apps", createRuleThousandApps},
    {"create-rule", "no-apps", createRuleNoApps},
    {"create-rule", "sites", createRuleSites},
    {"create-rule", "policy", createRulePolicy},
    {"quick-block", "apps", quickBlockApps},
    {"quick-block", "sites", quickBlockSites},
};

} // namespace

std::span<const Scene> protectionScenes()
{
    return scenes;
}

} // namespace stillgate::test
