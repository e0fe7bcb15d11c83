#include "Views/Protection/ProtectionViewModel.h"

#include "DesignSystem/Tokens.h"
#include "Platform/Memory/MemoryWorkspace.h"
#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

namespace
{

QStringList titlesOf(const RuleRow& row)
{
    QStringList titles;
    for (const auto& section : row.sections)
        titles << section.title;
    return titles;
}

} // namespace

TEST(RuleRows, tellWhatARuleIsAbout)
{
    const std::vector<std::string> blockList{"a.example", "b.example"};
    const std::vector<std::string> sites{"c.example"};
    const auto chess = apps({"org.chess"});
    const AppsByPlatform elsewhere{{"windows", {{.name = "Go"}}}};
    const QString oneApp = "1 desktop.quickBlock.apps";
    const QString oneSite = "1 desktop.quickBlock.websites";
    const QString listed = "2 desktop.quickBlock.websites";

    const struct
    {
        std::optional<std::string> category;
        std::vector<std::string> domains;
        std::optional<AppsByPlatform> apps;
        QString symbol;
        QStringList sections;
        bool blocksNothing;
    } cases[] = {
        {"gaming", {}, std::nullopt, "gamecontroller.fill", {listed}, false},
        {"gaming", sites, std::nullopt, "gamecontroller.fill", {oneSite}, false},
        {"gaming", {}, chess, "gamecontroller.fill", {oneApp, listed}, false},
        {"custom", {}, chess, "app.fill", {oneApp}, false},
        {"custom", sites, std::nullopt, "globe", {oneSite}, false},
        {"custom", sites, chess, "lock.shield.fill", {oneSite, oneApp}, false},
        {"custom", {}, elsewhere, "lock.shield.fill", {}, true},
        {std::nullopt, {}, std::nullopt, "lock.shield.fill", {}, true},
    };

    for (const auto& [category, domains, customApps, symbol, sections, blocksNothing] : cases) {
        auto subject = rule("r", category, domains);
        subject.customApps = customApps;
        const auto row = ruleRow(subject, blockList);
        EXPECT_EQ(row.symbol, symbol) << category.value_or("none");
        EXPECT_EQ(titlesOf(row), sections);
        EXPECT_EQ(row.blocksNothing, blocksNothing);
    }
}

TEST(RuleRows, showEightEntriesAndCountTheRest)
{
    for (const auto& [count, more] : {std::pair{8, ""}, {9, "+1 more"}, {30, "+22 more"}}) {
        const std::vector<std::string> domains(static_cast<std::size_t>(count), "a.example");
        const auto row = ruleRow(rule("r", "custom", domains), {});
        ASSERT_THAT(row.sections, SizeIs(1));
        EXPECT_THAT(row.sections[0].entries, SizeIs(8));
        EXPECT_EQ(row.sections[0].more, more);
    }
}

TEST(RuleRows, nameTheHoursOfACooldown)
{
    auto subject = rule("r", "news");
    subject.cooldownHours = 24;
    EXPECT_EQ(ruleRow(subject, {}).cooldown, "") << "its policy is another";
    subject.unblockPolicy = "cooldown";
    EXPECT_EQ(ruleRow(subject, {}).cooldown, "24h");
    subject.cooldownHours = std::nullopt;
    EXPECT_EQ(ruleRow(subject, {}).cooldown, "");
    subject.unblockPolicy = "unheard_of";
    EXPECT_EQ(ruleRow(subject, {}).policyName, "unheard_of");
}

class Protection : public AppStateFixture
{
protected:
    Protection()
    {
        state().isAuthenticated = true;
        m_workspace.installed = {
            {.bundleIdentifier = "org.Chess", .name = "Chess"}, {.bundleIdentifier = "org.go", .name = "Go"}};
    }

    [[nodiscard]] CreateRuleViewModel& openEditor()
    {
        m_viewModel.openCreateRule();
        return *m_viewModel.createRule();
    }

    [[nodiscard]] CreateRuleViewModel& openEditorForASite()
    {
        auto& editor = openEditor();
        editor.selectBlockMode(1);
        editor.setProperty("customDomains", "a.example");
        return editor;
    }

    [[nodiscard]] QuickBlockViewModel& openQuickBlock()
    {
        m_viewModel.openQuickBlock();
        return *m_viewModel.quickBlock();
    }

    /// The one that an editor has made.
    [[nodiscard]] BlockRule madeBy(CreateRuleViewModel& editor)
    {
        for (int step = editor.step(); step <= CreateRuleViewModel::lastStep; ++step)
            editor.goOn();
        EXPECT_EQ(m_viewModel.createRule(), nullptr) << "the sheet has closed";
        return state().blockRules.value().back();
    }

    [[nodiscard]] std::vector<std::string> idsInSession()
    {
        std::vector<std::string> ids;
        for (const auto& each : state().blockRules.value())
            ids.push_back(each.id);
        return ids;
    }

    MemoryWorkspace m_workspace;
    OwnRules m_ownRules{state(), m_backend, m_log};
    ProtectionViewModel m_viewModel{
        {state(), m_ownRules, m_monitor, m_tracker, m_workspace, m_notifications, m_time, m_time, m_host}};
};

TEST_F(Protection, ruleHasWhatItsKindAndPolicyAskFor)
{
    enum { socialMedia = 0, custom = 7, ofApps = 0, ofSites = 1, flexible = 0, cooldown = 1, permanent = 2 };

    const auto make = [&](int category, int mode, int policy) {
        auto& editor = openEditor();
        editor.selectCategory(category);
        editor.setProperty("customName", "Mine");
        editor.selectBlockMode(mode);
        editor.picker()->toggle("org.Chess");
        editor.setProperty("customDomains", "  a.example \n\n   \nhttps://b example/x\n");
        editor.selectCooldown(2);
        editor.selectPolicy(policy);
        return madeBy(editor);
    };
    const auto about = make(socialMedia, ofApps, flexible);
    EXPECT_EQ(about.category, "social_media");
    EXPECT_FALSE(about.customName || about.cooldownHours);
    EXPECT_THAT(about.customDomains, IsEmpty());
    ASSERT_TRUE(about.customApps);
    EXPECT_EQ(about.customApps->at(ownPlatform)[0].bundleId, "org.Chess");
    EXPECT_EQ(about.unblockPolicy, "flexible");
    EXPECT_TRUE(about.enabled && about.createdAt == m_time.now());

    const auto named = make(custom, ofSites, cooldown);
    EXPECT_EQ(named.customName, "Mine");
    EXPECT_EQ(named.cooldownHours, 4);
    EXPECT_FALSE(named.customApps);
    EXPECT_THAT(named.customDomains, ElementsAre("a.example", "https://b example/x"));
    EXPECT_NE(named.id, about.id);
    EXPECT_EQ(make(socialMedia, ofSites, permanent).unblockPolicy, "permanent");
}

TEST_F(Protection, ruleAboutAppsNeedsAnAppOrSitesEnteredBefore)
{
    auto& editor = openEditor();
    EXPECT_TRUE(editor.canGoOn());
    editor.goOn();
    EXPECT_FALSE(editor.canGoOn());
    editor.goOn();
    EXPECT_EQ(editor.step(), 2);
    editor.picker()->toggle("org.go");
    EXPECT_TRUE(editor.canGoOn());
    editor.picker()->toggle("org.go");
    editor.setProperty("customDomains", " \n ");
    EXPECT_FALSE(editor.canGoOn());
    editor.setProperty("customDomains", "a.example");
    EXPECT_TRUE(editor.canGoOn());
    EXPECT_EQ(editor.summary()[1].title, "0 desktop.quickBlock.apps");
    const auto made = madeBy(editor);
    EXPECT_FALSE(made.customApps);
    EXPECT_THAT(made.customDomains, IsEmpty()) << "they were entered for the other kind";
}

TEST_F(Protection, ruleHoldsBeforeTheServerKnowsItAndTakesTheServersForm)
{
    startOnline();
    m_backend.hold("createBlockRule");
    const auto local = madeBy(openEditorForASite());
    EXPECT_THAT(blockedNames(), Contains("a.example"));

    auto answer = local;
    answer.id = "of-the-server";
    m_backend.createdRule = answer;
    m_backend.release("createBlockRule");
    EXPECT_EQ(state().blockRules.value()[0].id, "of-the-server");
    EXPECT_EQ(m_backend.sentRules[0].id, local.id);
}

TEST_F(Protection, whatTheServerNeverGetsStaysAndIsThereAfterARestart)
{
    startOnline();
    const auto made = madeBy(openEditorForASite());
    EXPECT_THAT(m_log.lines, Contains(StartsWith("[CreateRule] API failed: ")));
    EXPECT_EQ(state().blockRules.value()[0].id, made.id);
    EXPECT_THAT(m_files.read(cacheFile).value_or(""), HasSubstr(made.id));
}

TEST_F(Protection, refreshTakesNoNewRuleAwayAndBringsNoDeletedOneBack)
{
    startOnline();
    m_backend.hold("getBlockRules");
    auto refresh = state().refreshData();
    m_backend.hold("createBlockRule");
    const auto made = madeBy(openEditorForASite());
    m_backend.release("getBlockRules");
    await(std::move(refresh));
    EXPECT_THAT(idsInSession(), ElementsAre(made.id)) << "it was made while the refresh was under way";
    await(state().refreshData());
    EXPECT_THAT(idsInSession(), ElementsAre(made.id)) << "the server may have answered before it had it";
    m_backend.createdRule = made;
    m_backend.release("createBlockRule");
    EXPECT_THAT(idsInSession(), ElementsAre(made.id));

    m_backend.blockRules = std::vector{made};
    m_backend.hold("deleteBlockRule " + made.id);
    m_viewModel.askToDelete(QString::fromStdString(made.id));
    m_viewModel.deleteRule();
    await(state().refreshData());
    EXPECT_THAT(idsInSession(), IsEmpty());
    m_backend.release("deleteBlockRule " + made.id); // with a failure
    await(state().refreshData());
    EXPECT_THAT(idsInSession(), ElementsAre(made.id)) << "the server has the last word";
}

TEST_F(Protection, nothingIsMadeOrDeletedAfterASignOut)
{
    startOnline();
    auto& editor = openEditorForASite();
    state().logout();
    for (int step = 1; step <= CreateRuleViewModel::lastStep; ++step)
        editor.goOn();
    EXPECT_THAT(state().blockRules.value(), IsEmpty());
    EXPECT_FALSE(m_files.read(cacheFile)) << "the next user's start would find it";
    EXPECT_THAT(m_backend.sentRules, IsEmpty());
}

TEST_F(Protection, answerForASessionThatIsOverChangesNothing)
{
    startOnline();
    m_backend.hold("createBlockRule");
    (void)madeBy(openEditorForASite());
    state().logout();
    m_backend.createdRule = rule("late", "news");
    m_backend.release("createBlockRule");
    EXPECT_THAT(state().blockRules.value(), IsEmpty());
    EXPECT_FALSE(m_files.read(cacheFile)) << "the next user's start would find it";
}

TEST_F(Protection, deletedRuleIsGoneAtOnceWhateverTheServerSays)
{
    startOnline();
    auto firm = rule("r1", "custom", {"a.example"});
    firm.unblockPolicy = "permanent";
    state().blockRules = std::vector{firm, rule("r2", "custom", {"b.example"})};
    state().syncBlockingState();
    EXPECT_THAT(blockedNames(), testing::IsSupersetOf({"a.example", "b.example"}));
    EXPECT_TRUE(m_monitor.configuration.blockedDomains.contains("a.example"));
    m_viewModel.askToDelete("r1");
    EXPECT_TRUE(m_viewModel.asksToDelete());
    m_viewModel.closeSheet();
    EXPECT_THAT(state().blockRules.value(), SizeIs(2));

    m_viewModel.askToDelete("r1");
    m_viewModel.deleteRule();
    EXPECT_FALSE(m_viewModel.asksToDelete());
    EXPECT_EQ(m_viewModel.rules()->rowCount(), 1);
    EXPECT_THAT(m_backend.calls, Contains("deleteBlockRule r1"));
    EXPECT_FALSE(m_monitor.configuration.blockedDomains.contains("a.example"));
    EXPECT_THAT(blockedNames(), Not(Contains("a.example")));
    EXPECT_THAT(blockedNames(), Contains("b.example"));

    m_hostsFile.setTemporaryDomains({"q.example"});
    m_viewModel.askToDelete("r2");
    m_viewModel.deleteRule();
    EXPECT_THAT(blockedNames(), Not(Contains("b.example")));
    EXPECT_THAT(blockedNames(), Contains("q.example")) << "a quick block is no rule";
}

TEST_F(Protection, lastRulesBlockGoesWithIt)
{
    startOnline();
    state().blockRules = std::vector{rule("r1", "custom", {"a.example"})};
    state().syncBlockingState();
    m_viewModel.askToDelete("r1");
    m_viewModel.deleteRule();
    EXPECT_EQ(m_files.at(hostsPath), "127.0.0.1 localhost\n");
}

TEST_F(Protection, quickBlockTakesBothTabsWhicheverIsInView)
{
    auto& sheet = openQuickBlock();
    sheet.picker()->toggle("org.Chess");
    EXPECT_TRUE(sheet.canStart());
    sheet.selectTab(1);
    EXPECT_FALSE(sheet.canStart()) << "what is in view is empty";
    sheet.start();
    EXPECT_FALSE(m_monitor.activeQuickBlock.value());
    sheet.setDomainInput(" News.Example \n\nnews.example\n");
    sheet.start();
    const auto& session = m_monitor.activeQuickBlock.value();
    ASSERT_TRUE(session);
    EXPECT_THAT(session->bundleIds, ElementsAre("org.Chess"));
    EXPECT_THAT(session->domains, ElementsAre("news.example"));
    EXPECT_EQ(session->durationMinutes, 30);
    EXPECT_EQ(m_viewModel.quickBlock(), nullptr) << "the sheet has closed";
}

TEST_F(Protection, quickBlockUntilMidnightLastsAMinuteAtLeast)
{
    const auto today = m_host.startOfDay(m_time.now()) + 24h;
    for (const auto& [left, minutes] : {std::pair{std::chrono::seconds{90min}, 90}, {30s, 1}, {119s, 1}, {24h, 1440}}) {
        m_time.setCivilTime(today + 24h - left);
        auto& sheet = openQuickBlock();
        sheet.picker()->toggle("org.Chess");
        sheet.selectDuration(5);
        sheet.start();
        EXPECT_EQ(m_monitor.activeQuickBlock.value()->durationMinutes, minutes);
    }
}

TEST_F(Protection, bannerCountsDownAndGoesWithTheTime)
{
    int changes = 0;
    QObject::connect(&m_viewModel, &ProtectionViewModel::changed, [&] { ++changes; });
    m_monitor.activeQuickBlock =
        QuickBlockSession{.bundleIds = {"a", "b"}, .expiresAt = m_time.now() + 90s, .durationMinutes = 15};
    EXPECT_EQ(m_viewModel.quickBlockText(), "2 desktop.quickblock.apps · 1m controller.remaining");
    m_time.advance(20s);
    EXPECT_EQ(std::exchange(changes, 0), 1) << "it tells the same";
    m_time.advance(20s);
    EXPECT_EQ(m_viewModel.quickBlockText(), "2 desktop.quickblock.apps · 0m controller.remaining");
    m_time.advance(51s);
    EXPECT_FALSE(m_viewModel.hasQuickBlock());
    EXPECT_EQ(changes, 2);
    m_viewModel.endQuickBlock();
    EXPECT_FALSE(m_monitor.activeQuickBlock.value());
}

TEST_F(Protection, opensTheQuickBlockOnRequest)
{
    auto& editor = openEditor();
    editor.goOn();
    m_notifications.post(sgShowQuickBlock);
    EXPECT_EQ(m_viewModel.createRule(), &editor) << "what is being written isn't thrown away";
    m_viewModel.closeSheet();
    m_notifications.post(sgShowQuickBlock);
    auto* sheet = m_viewModel.quickBlock();
    ASSERT_NE(sheet, nullptr);
    m_notifications.post(sgShowQuickBlock);
    EXPECT_EQ(m_viewModel.quickBlock(), sheet);
}

TEST_F(Protection, appsThatASearchHidesStayChosen)
{
    AppPickerModel picker{{{.bundleId = "org.Chess", .name = "Chess"}, {.bundleId = "org.go", .name = "Go"}}};
    picker.toggle("org.Chess");
    picker.setSearchText("GO");
    EXPECT_EQ(picker.apps()->rowCount(), 1);
    EXPECT_EQ(picker.selectionText(), "1 common.selected") << "also what isn't in view";
    picker.toggle("org.Chess");
    EXPECT_EQ(picker.selectionText(), "");
}

} // namespace stillgate
