#include "App/AppDelegate.h"

#include "tests/support/AppStateFixture.h"
#include "tests/support/FakeShell.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

constexpr auto report = "reportTampering app_deletion_attempt: App terminated while in permanent mode";

class Services : public AppStateFixture
{
protected:
    ServiceRunner& runner()
    {
        if (!m_runner)
            m_runner.emplace(state(), services());
        return *m_runner;
    }

private:
    std::optional<ServiceRunner> m_runner;
};

TEST_F(Services, blockTheDomainsOfTheRulesThatAreOn)
{
    auto off = rule("off", std::nullopt, {"off.example"});
    off.enabled = false;
    m_backend.answerFirstLoad();
    state().isAuthenticated = true;
    state().blockRules =
        std::vector{rule("a", std::nullopt, {"one.example"}), off, rule("b", "social", {"two.example"})};
    runner().startServices();
    EXPECT_EQ(m_dnsProxy.setUps, 1);
    EXPECT_TRUE(m_monitor.isMonitoring);
    EXPECT_EQ(m_hostsFile.blockedCount.value(), 2);
    EXPECT_THAT(blockedNames(), Contains("two.example"));

    state().blockRules = std::vector{off};
    runner().startServices();
    EXPECT_THAT(blockedNames(), Contains("two.example")) << "no list is no reason to lift a block";
    EXPECT_EQ(m_writer.requests.size(), 1U);
}

TEST_F(Services, stayOffAfterASignOutDuringTheSetUp)
{
    m_dnsProxy.approval = std::make_shared<OneShotEvent>();
    startOnline();
    state().blockRules = std::vector{rule("a", std::nullopt, {"one.example"})};
    runner().startServices();
    state().logout();
    m_dnsProxy.approval->happen();
    EXPECT_FALSE(m_monitor.isMonitoring);
    EXPECT_THAT(blockedNames(), IsEmpty());
}

TEST_F(Services, endWithAReportInPermanentModeOnly)
{
    for (const auto& [mode, reports] : {std::pair{"flexible", 0}, {"", 0}, {"permanent", 1}}) {
        startOnline();
        runner().startServices();
        m_monitor.configuration.guardianFlexibilityMode = mode;
        m_backend.calls.clear();
        const Awaited ended{runner().applicationWillTerminate()};
        EXPECT_TRUE(ended.hasEnded()) << "also when the report fails";
        EXPECT_FALSE(m_monitor.isMonitoring) << mode;
        EXPECT_FALSE(m_tracker.isTracking) << mode;
        EXPECT_EQ(std::ranges::count(m_backend.calls, report), reports) << mode;
    }
}

TEST_F(Services, waitTwoSecondsForTheReport)
{
    startOnline();
    m_monitor.configuration.guardianFlexibilityMode = "permanent";
    m_backend.hold(report);
    const Awaited ended{runner().applicationWillTerminate()};
    m_time.advance(1999ms);
    EXPECT_FALSE(ended.hasEnded());
    m_time.advance(1ms);
    EXPECT_TRUE(ended.hasEnded());
    EXPECT_FALSE(m_tracker.isTracking);
    m_backend.release(report);
}

TEST_F(Services, letAWriteComeToItsEnd)
{
    startOnline();
    m_writer.hold();
    m_hostsFile.applyBlocks({"late.example"});
    const Awaited ended{runner().applicationWillTerminate()};
    EXPECT_FALSE(ended.hasEnded());
    m_writer.finishHeld();
    EXPECT_TRUE(ended.hasEnded());
    EXPECT_THAT(blockedNames(), Contains("late.example")) << "the blocks stay";
}

class Shell : public AppStateFixture
{
protected:
    Shell() { m_factory.hasScreen = true; }

    AppDelegate& delegate()
    {
        if (!m_delegate) {
            m_runner.emplace(state(), services());
            m_delegate.emplace(state(),
                ShellServices{*m_runner, m_notifications, m_time, m_statusItem, m_factory, [this] { ++m_quits; }});
        }
        return *m_delegate;
    }

    void launch() { delegate().applicationDidFinishLaunching(); }

    void launchSignedIn()
    {
        m_backend.answerFirstLoad();
        launch();
        pass();
    }

    void pass() { m_time.advance(500ms); }

    void quitApplication()
    {
        m_delegate.reset();
        m_runner.reset();
        restart();
    }

    FakeWindowFactory m_factory;
    FakeStatusItem m_statusItem;
    int m_quits = 0;
    const std::vector<std::string>& m_onScreen = m_factory.onScreen;

private:
    std::optional<ServiceRunner> m_runner;
    std::optional<AppDelegate> m_delegate;
};

TEST_F(Shell, launchOpensWhatTheSessionCallsFor)
{
    using Ids = std::vector<std::string>;

    const struct
    {
        AppConfig configuration;
        bool hasTokens;
        Ids atOnce;
        Ids afterAPass;
        int setUps;
    } cases[] = {
        {{.maintenanceMode = true}, true, {"maintenance"}, {"maintenance"}, 0},
        {{.minVersion = "2.0"}, true, {"force-update"}, {"force-update"}, 0},
        {{.maintenanceMode = true, .minVersion = "2.0"}, true, {"maintenance"}, {"maintenance", "force-update"}, 0},
        {{}, false, {"auth"}, {"auth"}, 0},
        {{}, true, {}, {}, 2},
    };

    m_backend.answerFirstLoad();
    for (const auto& [configuration, hasTokens, atOnce, afterAPass, setUps] : cases) {
        quitApplication();
        m_dnsProxy.setUps = 0;
        m_backend.appConfig = configuration;
        m_backend.hasStoredTokens = hasTokens;
        launch();
        EXPECT_EQ(m_onScreen, atOnce);
        pass();
        EXPECT_EQ(m_onScreen, afterAPass);
        EXPECT_EQ(m_dnsProxy.setUps, setUps) << "once by the launch, once by the watch";
    }
}

TEST_F(Shell, statusItemTogglesThePopover)
{
    launchSignedIn();
    m_statusItem.place = ScreenRectangle{1800, 0, 24, 24};
    m_statusItem.click();
    EXPECT_TRUE(m_factory.popoverIsShown);
    EXPECT_EQ(m_factory.popoverAnchor, m_statusItem.place);
    m_statusItem.click();
    EXPECT_FALSE(m_factory.popoverIsShown);
    m_statusItem.click();
    m_factory.popoverIsShown = false; // the user has turned to something else
    m_statusItem.click();
    EXPECT_TRUE(m_factory.popoverIsShown);
    EXPECT_EQ(m_factory.popovers, 1);
}

TEST_F(Shell, statusItemRefreshesAndQuits)
{
    launchSignedIn();
    m_backend.calls.clear();
    m_statusItem.choose("desktop.tray.refresh");
    EXPECT_THAT(m_backend.calls, Contains("getEffectiveRules"));
    m_statusItem.choose("desktop.tray.quit");
    EXPECT_EQ(m_quits, 1);
}

TEST_F(Shell, takesItsOwnKeysOnly)
{
    launchSignedIn();
    m_backend.calls.clear();
    for (const auto* characters : {"D", "R", "x", "", "dd"})
        EXPECT_FALSE(delegate().handleCommandKey(characters)) << characters;
    EXPECT_THAT(m_factory.settings, IsEmpty());
    EXPECT_THAT(m_backend.calls, IsEmpty());
    EXPECT_TRUE(delegate().handleCommandKey("r"));
    EXPECT_THAT(m_backend.calls, Contains("getStreak"));
}

TEST_F(Shell, opensTheSignInWhenAsked)
{
    m_backend.hasStoredTokens = false;
    launch();
    m_factory.closeByHand("auth");
    pass();
    EXPECT_THAT(m_onScreen, IsEmpty());
    m_notifications.post(sgOpenAuthWindow);
    EXPECT_THAT(m_onScreen, ElementsAre("auth"));
}

TEST_F(Shell, secondStartShowsWhatThereIs)
{
    launchSignedIn();
    delegate().applicationReopened();
    EXPECT_THAT(m_factory.settings, ElementsAre("shown"));

    for (auto* gate : {&state().requiresForceUpdate, &state().isMaintenanceMode}) {
        *gate = true;
        pass();
        m_factory.onScreen.clear();
        delegate().applicationReopened();
        delegate().applicationReopened();
        const auto* expected = gate == &state().isMaintenanceMode ? "maintenance" : "force-update";
        EXPECT_THAT(m_onScreen, ElementsAre(expected));
    }
    EXPECT_THAT(m_factory.settings, SizeIs(1));
}

TEST_F(Shell, secondStartDuringTheFirstAsksNobodyToSignIn)
{
    m_backend.answerFirstLoad();
    m_backend.hold("getStreak");
    launch();
    delegate().applicationReopened();
    EXPECT_THAT(m_onScreen, IsEmpty());
    m_backend.release("getStreak");
    pass();
    EXPECT_THAT(m_onScreen, IsEmpty());
}

TEST_F(Shell, quitsOnceAndAfterItsReport)
{
    launchSignedIn();
    m_monitor.configuration.guardianFlexibilityMode = "permanent";
    m_backend.hold(report);
    delegate().terminate();
    delegate().terminate();
    EXPECT_EQ(m_quits, 0);
    m_backend.release(report);
    EXPECT_EQ(m_quits, 1);
    EXPECT_EQ(std::ranges::count(m_backend.calls, report), 1);
}

} // namespace stillgate
