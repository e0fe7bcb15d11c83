#include "Views/Protection/ProtectionViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;

BlockRule ruleOf(const std::string& id, const std::string& category, const std::string& policy)
{
    auto made = rule(id, category);
    made.unblockPolicy = policy;
    return made;
}

std::vector<BlockRule> everyKindOfRule()
{
    auto games = ruleOf("r2", "gaming", "permanent");
    games.customApps = apps({"Chess", "Go"});
    auto shops = ruleOf("r3", "shopping", "cooldown");
    shops.cooldownHours = 24;
    shops.customDomains = {"shop.example", "auction.example", "shoes.example", "books.example", "toys.example",
        "garden.example", "tools.example", "tea.example", "cheese.example", "hats.example"};
    auto custom = ruleOf("r4", "custom", "group_approval");
    custom.customName = "Everything that keeps me from writing my thesis before the end of the summer";
    custom.customDomains = {"a-very-long-name-that-nobody-would-ever-want-to-type-into-an-address-bar.example"};
    auto empty = ruleOf("r5", "custom", "timed");
    empty.customName = "Nothing yet";
    return {ruleOf("r1", "social_media", "flexible"), games, shops, custom, empty};
}

ProtectionViewModel& open(Stage& stage)
{
    stage.monitor.isMonitoring = true;
    stage.monitor.blockedAppAttempts = 12;
    return stage.openTab<ProtectionViewModel>(settingstab::protection);
}

ProtectionViewModel& openWithRules(Stage& stage)
{
    stage.state.blockRules = everyKindOfRule();
    return open(stage);
}

void installApps(Stage& stage)
{
    for (int number = 1; number <= 40; ++number)
        stage.workspace.installed.push_back({.bundleIdentifier = "org.example.App" + std::to_string(number),
            .name = number == 2 ? "An App With a Name That Goes On and On Until There Is No Room Left for It at All"
                                : "App " + std::to_string(number)});
}

void expanded(Stage& stage)
{
    openWithRules(stage);
    Stage::expandAllRows();
}

void quickBlockRuns(Stage& stage)
{
    stage.monitor.activeQuickBlock =
        QuickBlockSession{.bundleIds = {"a", "b"}, .expiresAt = stage.time.now() + 29min, .durationMinutes = 30};
    openWithRules(stage);
}

CreateRuleViewModel& openCreateRule(Stage& stage)
{
    auto& tab = openWithRules(stage);
    tab.openCreateRule();
    return *tab.createRule();
}

void createRuleName(Stage& stage)
{
    openCreateRule(stage);
    Stage::press("onboarding.categories.custom");
}

void createRuleApps(Stage& stage)
{
    installApps(stage);
    auto& sheet = openCreateRule(stage);
    sheet.goOn();
    sheet.picker()->toggle("org.example.App1");
    sheet.picker()->toggle("org.example.App3");
}

void createRuleSites(Stage& stage)
{
    auto& sheet = openCreateRule(stage);
    sheet.goOn();
    sheet.selectBlockMode(1);
}

void createRulePolicy(Stage& stage)
{
    createRuleSites(stage);
    auto& sheet = *Stage::tabViewModel<ProtectionViewModel>().createRule();
    sheet.goOn();
    sheet.selectPolicy(1);
}

QuickBlockViewModel& openQuickBlock(Stage& stage)
{
    installApps(stage);
    auto& tab = open(stage);
    tab.openQuickBlock();
    return *tab.quickBlock();
}

void quickBlockSites(Stage& stage)
{
    auto& sheet = openQuickBlock(stage);
    sheet.selectTab(1);
    sheet.setDomainInput("news.example\nvideo.example");
}

} // namespace

std::vector<Scene> protectionScenes()
{
    return {
        {"protection", "none", [](Stage& stage) { open(stage); }},
        {"protection", "every", [](Stage& stage) { openWithRules(stage); }},
        {"protection", "expanded", expanded},
        {"protection", "quick-block-runs", quickBlockRuns},
        {"protection", "ask-to-delete", [](Stage& stage) { openWithRules(stage).askToDelete("r1"); }},
        {"create-rule", "category", [](Stage& stage) { openCreateRule(stage); }},
        {"create-rule", "name", createRuleName},
        {"create-rule", "apps", createRuleApps},
        {"create-rule", "no-apps", [](Stage& stage) { openCreateRule(stage).goOn(); }},
        {"create-rule", "sites", createRuleSites},
        {"create-rule", "policy", createRulePolicy},
        {"quick-block", "apps", [](Stage& stage) { openQuickBlock(stage); }},
        {"quick-block", "sites", quickBlockSites},
    };
}

} // namespace stillgate::test
