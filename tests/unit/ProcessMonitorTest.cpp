#include "App/BlockModalWindowController.h"
#include "Blocking/ProcessMonitorService.h"
#include "Platform/Memory/MemoryBrowserScripting.h"
#include "Platform/Memory/MemoryUserNotifications.h"
#include "Platform/Memory/MemoryWorkspace.h"
#include "tests/support/FakeShell.h"
#include "tests/support/MemoryMachine.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

/// The monitor with its block screen, on a desktop in memory.
class Monitor : public MemoryMachine
{
protected:
    Monitor()
    {
        m_blockModal.showIn(m_windows);
        configure({.customBlockedBundleIds = {chess}});
    }

    void configure(ProcessMonitorConfiguration configuration, bool withProcesses = false)
    {
        if (!withProcesses)
            configuration.blockedProcesses.clear();
        m_monitor.setConfiguration(std::move(configuration));
    }

    void blockSites(DomainSet domains)
    {
        configure({.blockedDomains = std::move(domains), .domainCategories = {{"casino.example", "gambling"}}});
        m_monitor.startMonitoring();
        m_workspace.bringToFront(firefox);
        m_workspace.app(firefox).name = "Firefox ESR";
    }

    void visit(const std::string& address)
    {
        m_browsers.addresses[firefox] = address;
        m_time.advance(2s);
    }

    ProcessMonitorService::Desktop desktop(BlockModalPresenter& blockModal)
    {
        return {m_workspace, m_browsers, blockModal, m_hostsFile, m_userNotifications, m_time, m_time, m_host};
    }

    [[nodiscard]] bool isScreenUp() const { return !m_windows.onScreen.empty(); }

    [[nodiscard]] const BlockModal& screen() const { return m_windows.blockModals.back(); }

    void dismiss() const { m_windows.blockModalActions.onDismiss(); }

    [[nodiscard]] const std::vector<std::string>& told(const std::string& app) { return m_workspace.app(app).told; }

    static constexpr auto chess = "org.chess";
    static constexpr auto firefox = "org.mozilla.firefox";

    MemoryWorkspace m_workspace;
    MemoryBrowserScripting m_browsers;
    FakeWindowFactory m_windows;
    BlockModalWindowController m_blockModal{m_backend};
    MemoryUserNotifications m_userNotifications;
    ProcessMonitorService m_monitor{desktop(m_blockModal)};
};

TEST_F(Monitor, forbiddenAppIsHiddenWhereverItComesFrom)
{
    m_workspace.bringToFront("org.Chess");
    m_time.advance(0ms);
    EXPECT_TRUE(m_windows.isPrepared) << "there can be one";
    EXPECT_FALSE(isScreenUp()) << "nobody watches yet";
    m_monitor.startMonitoring();
    EXPECT_THAT(told("org.Chess"), ElementsAre("hide")) << "it was there at the start";
    EXPECT_TRUE(isScreenUp());
    dismiss();
    EXPECT_FALSE(isScreenUp());

    m_workspace.bringToFront("org.Chess");
    EXPECT_THAT(told("org.Chess"), ElementsAre("hide", "hide")) << "it was activated";
    dismiss();
    m_workspace.app("org.Chess").hidden = false; // and nobody has told of it
    m_time.advance(2s);
    EXPECT_THAT(told("org.Chess"), ElementsAre("hide", "hide", "hide"));
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 3);

    m_workspace.bringToFront("org.allowed");
    EXPECT_THAT(told("org.allowed"), IsEmpty());
}

TEST_F(Monitor, oneScreenForAnAppThatComesBackBelowIt)
{
    m_monitor.startMonitoring();
    m_workspace.bringToFront(chess);
    m_workspace.bringToFront(chess);
    m_time.advance(10s);
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 1);
    EXPECT_THAT(m_windows.blockModals, SizeIs(1));
    EXPECT_THAT(told(chess), ElementsAre("hide", "hide")) << "never quit: the user's work may be in it";
}

TEST_F(Monitor, strictAppThatIsStartedOnceMoreBelowItsScreenIsQuit)
{
    configure({.customBlockedBundleIds = {chess}, .bundleIdPolicies = {{chess, "permanent"}}});
    m_monitor.startMonitoring();
    m_workspace.bringToFront(chess);
    EXPECT_TRUE(m_workspace.app(chess).terminated);
    m_workspace.bringToFront(chess);
    EXPECT_THAT(told(chess), ElementsAre("terminate")) << "the second one too";
    EXPECT_THAT(m_windows.blockModals, SizeIs(1));
}

TEST_F(Monitor, screenThatTakesAnothersPlaceLetsNothingGo)
{
    blockSites({"casino.example"});
    visit("http://casino.example/");
    configure({.customBlockedBundleIds = {chess}, .blockedDomains = {"casino.example"}});
    m_workspace.bringToFront(chess);
    EXPECT_EQ(screen().variant, MacBlockVariant::app);
    m_workspace.bringToFront(firefox);
    m_time.advance(2s);
    EXPECT_EQ(screen().variant, MacBlockVariant::website) << "the site is blocked as before";
    m_workspace.bringToFront(chess);
    EXPECT_EQ(screen().variant, MacBlockVariant::app) << "and so is the app";
}

TEST_F(Monitor, hiddenAppIsQuitOnlyWhenItIsForbidden)
{
    m_monitor.startMonitoring();
    m_workspace.launchHidden(chess);
    m_workspace.launchHidden("org.allowed");
    EXPECT_THAT(told(chess), ElementsAre("terminate"));
    EXPECT_THAT(told("org.allowed"), IsEmpty());
    EXPECT_FALSE(isScreenUp());
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 0);

    configure({}, true);
    m_workspace.app("org.cursor").name = "Cursor";
    m_workspace.launchHidden("org.cursor");
    EXPECT_THAT(told("org.cursor"), IsEmpty()) << "a match by name alone doesn't do";
    m_monitor.updateBudget(ScreenTimeBudget{.dailyLimitMinutes = 1, .usedMinutesToday = 1});
    m_workspace.app("org.xcode").name = "Xcode";
    m_workspace.launchHidden("org.xcode");
    EXPECT_THAT(told("org.xcode"), ElementsAre("terminate"));
}

TEST_F(Monitor, strictBlockQuitsAndEndsWhatDoesNotObey)
{
    m_monitor.startMonitoring();

    const struct
    {
        std::string policy;
        std::string guardianMode;
        bool isPolite;
        std::vector<std::string> told;
    } cases[] = {
        {"permanent", "flexible", true, {"terminate"}},
        {"permanent", "flexible", false, {"terminate", "forceTerminate"}},
        {"flexible", "permanent", false, {"terminate", "forceTerminate"}},
        {"cooldown", "flexible", false, {"hide"}},
    };

    for (const auto& [policy, guardianMode, isPolite, expected] : cases) {
        SCOPED_TRACE(policy + " under " + guardianMode);
        configure({.customBlockedBundleIds = {chess},
            .bundleIdPolicies = {{chess, policy}},
            .guardianFlexibilityMode = guardianMode});
        m_workspace.app(chess).told.clear();
        m_workspace.app(chess).terminated = false;
        m_workspace.app(chess).isPolite = isPolite;
        m_workspace.bringToFront(chess);
        EXPECT_EQ(screen().allowBypass, expected.front() == "hide");
        dismiss();
        m_workspace.leaveNothingInFront();
        m_time.advance(499ms);
        EXPECT_THAT(told(chess), ElementsAre(expected.front()));
        m_time.advance(1ms);
        EXPECT_EQ(told(chess), expected);
    }
}

TEST_F(Monitor, screenTellsWhatTheRulesSay)
{
    configure({.customBlockedBundleIds = {chess},
        .activeSession = "Homework",
        .bundleIdCategories = {{chess, "gaming"}},
        .guardianMessage = "Later.",
        .guardianIllustrationKey = "ill-nature"});
    m_workspace.app(chess).name = "Chess";
    m_workspace.app(chess).place = ScreenRectangle{1, 2, 3, 4};
    m_monitor.startMonitoring();
    m_workspace.bringToFront(chess);
    const BlockModal expected{.variant = MacBlockVariant::app,
        .appName = "Chess",
        .session = "Homework",
        .category = "gaming",
        .guardianMessage = "Later.",
        .illustrationOverride = "ill-nature",
        .allowBypass = true,
        .place = ScreenRectangle{1, 2, 3, 4}};
    EXPECT_EQ(screen(), expected);
}

TEST_F(Monitor, nightHasAScreenOfItsOwnAndABudgetToo)
{
    using enum MacBlockVariant;
    m_monitor.startMonitoring();

    const auto midnight = m_host.startOfDay(m_time.now());
    const std::pair<std::chrono::minutes, MacBlockVariant> cases[] = {
        {7h - 1min, sleep}, {7h, app}, {22h - 1min, app}, {22h, sleep}, {0h, sleep}};

    for (const auto& [time, variant] : cases) {
        m_time.setCivilTime(midnight + time);
        m_workspace.bringToFront(chess);
        EXPECT_EQ(screen().variant, variant) << time.count() << " minutes after midnight";
        dismiss();
    }

    configure({}, true);
    m_workspace.app("org.code").executable = "/opt/encoder/MyCode-2";
    m_workspace.bringToFront("org.code");
    EXPECT_EQ(screen().variant, sleep);
    EXPECT_EQ(screen().appName, "VS Code") << "the entry's name for it";
    dismiss();
    m_monitor.updateBudget(ScreenTimeBudget{.dailyLimitMinutes = 60, .earnedMinutesToday = 15, .usedMinutesToday = 75});
    m_workspace.bringToFront("org.code");
    EXPECT_EQ(screen().variant, budget);
    EXPECT_EQ(screen().appName, "org.code") << "the app's own";
}

TEST_F(Monitor, budgetIsLookedAtOnceWhenItIsUsedUp)
{
    configure({}, true);
    m_workspace.app("org.xcode").name = "Xcode";
    m_workspace.bringToFront("org.xcode");
    m_workspace.bringToFront("org.allowed");
    m_monitor.startMonitoring();
    const ScreenTimeBudget left{.dailyLimitMinutes = 60, .earnedMinutesToday = 15, .usedMinutesToday = 74};
    auto none = left;
    none.usedMinutesToday = 75;
    m_monitor.updateBudget(none);
    EXPECT_FALSE(isScreenUp()) << "a budget by itself forbids nothing";
    m_workspace.bringToFront("org.xcode");
    EXPECT_EQ(screen().variant, MacBlockVariant::budget);
    dismiss();

    m_monitor.updateBudget(left);
    m_workspace.app("org.xcode").hidden = false; // back below the screen
    m_monitor.updateBudget(none);
    EXPECT_THAT(m_windows.blockModals, SizeIs(2)) << "just used up: looked at before the next tick";
    m_monitor.updateBudget(std::nullopt);
    dismiss();
    m_workspace.bringToFront("org.xcode");
    EXPECT_EQ(screen().variant, MacBlockVariant::app);
}

TEST_F(Monitor, stopsForGood)
{
    m_monitor.startMonitoring();
    m_monitor.startMonitoring();
    m_workspace.bringToFront(chess);
    EXPECT_TRUE(isScreenUp());
    m_monitor.stopMonitoring();
    EXPECT_FALSE(isScreenUp());
    m_time.advance(0ms);
    EXPECT_EQ(m_time.pendingTimers(), 0U);
    m_workspace.bringToFront(chess);
    EXPECT_FALSE(isScreenUp());
    m_monitor.startMonitoring();
    EXPECT_TRUE(isScreenUp()) << "nothing is left of the screen that was up";
}

TEST_F(Monitor, appWithoutIdentifierCanOnlyMatchByName)
{
    configure({.customBlockedBundleIds = {chess}}, true);
    m_monitor.startMonitoring();
    m_workspace.bringToFront(std::nullopt);
    EXPECT_FALSE(isScreenUp());
    m_workspace.app(std::nullopt).name = "WebStorm 2026";
    m_time.advance(2s);
    EXPECT_EQ(screen().appName, "WebStorm");
    m_time.advance(2s);
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 1);
}

TEST_F(Monitor, blockedSiteBringsUpTheScreenUntilItIsLeft)
{
    blockSites({"casino.example", "news.example"});
    visit("https://Sub.Casino.example:8443/roulette?x=1");
    const BlockModal expected{.variant = MacBlockVariant::website,
        .appName = "Firefox ESR",
        .domain = "casino.example",
        .category = "gambling",
        .allowBypass = true};
    EXPECT_EQ(screen(), expected);
    m_time.advance(10s);
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 1) << "seen already";
    dismiss();
    m_time.advance(2s);
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 2) << "the tab stays, and so does the block";
    visit("https://open.example/");
    visit("https://casino.example/");
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 3) << "left, and come back";
    visit("https://news.example./");
    EXPECT_EQ(screen().domain, "news.example");
    EXPECT_THAT(told(firefox), IsEmpty());
}

TEST_F(Monitor, whatTellsNoSiteChangesNothing)
{
    blockSites({"casino.example"});
    visit("http://casino.example/");
    for (const auto* address : {"about:newtab", "file:///home/ada/casino.example", "", "http://", "::not an address::"})
        visit(address);
    visit("http://casino.example/");
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 1) << "the site was never left";
    for (const auto* address :
        {"http://notcasino.example/", "http://example/", "http://casino.example.org/", "http://xn--casino.example/"}) {
        visit(address);
        EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 1) << address;
    }
}

TEST_F(Monitor, browsersAreAskedOnlyWhenThereIsSomethingToFind)
{
    blockSites({});
    m_time.advance(10s);
    EXPECT_EQ(m_browsers.questions, 0);
    blockSites({"casino.example"});
    m_workspace.bringToFront("com.operasoftware.Opera");
    m_time.advance(10s);
    EXPECT_EQ(m_browsers.questions, 0) << "that one can't be asked";
    m_workspace.bringToFront(firefox);
    EXPECT_EQ(m_browsers.questions, 0) << "an activation alone doesn't ask";
    m_time.advance(4s);
    EXPECT_EQ(m_browsers.questions, 2);
}

TEST_F(Monitor, answerThatComesTooLateIsNoBlock)
{
    blockSites({"casino.example"});
    m_browsers.slowness = std::make_shared<OneShotEvent>();
    visit("http://casino.example/");
    visit("http://casino.example/");
    m_monitor.stopMonitoring();
    m_monitor.startMonitoring();
    m_browsers.slowness->happen();
    EXPECT_EQ(m_windows.blockModals.size(), 1U) << "the check of the new start alone";
}

TEST_F(Monitor, withoutWindowsAppsAreStoppedAllTheSame)
{
    BlockModalWindowController blockModal{m_backend};
    ProcessMonitorService headless{desktop(blockModal)};
    headless.setConfiguration({.customBlockedBundleIds = {chess}});
    headless.startMonitoring();
    m_workspace.bringToFront(chess);
    m_workspace.bringToFront(chess);
    EXPECT_THAT(told(chess), ElementsAre("hide", "hide"));
}

} // namespace stillgate
