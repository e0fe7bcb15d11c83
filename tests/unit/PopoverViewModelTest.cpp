#include "Views/Popover/PopoverViewModel.h"

#include "DesignSystem/Tokens.h"
#include "Platform/Memory/MemoryPasteboard.h"
#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class PopoverScreen : public AppStateFixture
{
protected:
    PopoverScreen()
    {
        m_bundle.infoValues["STILLGATE_WEB_SITE_URL"] = "https://stillgate.example";
        QObject::connect(&m_viewModel, &PopoverViewModel::changed, [this] { ++m_changes; });
    }

    [[nodiscard]] std::function<void()> note(const char* what)
    {
        return [this, what] { m_done.emplace_back(what); };
    }

    MemoryPasteboard m_pasteboard;
    std::vector<std::string> m_done;
    int m_changes = 0;
    PopoverViewModel m_viewModel{{
        .session = state(),
        .monitor = m_monitor,
        .notifications = m_notifications,
        .bundle = m_bundle,
        .pasteboard = m_pasteboard,
        .clock = m_time,
        .scheduler = m_time,
        .showSettings = note("show settings"),
        .refresh = note("refresh"),
        .quit = note("quit"),
    }};
};

TEST_F(PopoverScreen, showsNothingOfASessionThatIsOver)
{
    state().isOffline = true;
    EXPECT_FALSE(m_viewModel.isAuthenticated() || m_viewModel.isProtected() || m_viewModel.isOffline());
    EXPECT_THAT(m_viewModel.actions(), SizeIs(1)) << "the way out";
    state().isAuthenticated = true;
    EXPECT_TRUE(m_viewModel.isAuthenticated() && m_viewModel.isProtected() && m_viewModel.isOffline());
    state().isBlockingActive = false;
    EXPECT_FALSE(m_viewModel.isProtected());
    EXPECT_EQ(m_viewModel.statusText(), "common.inactive");
    EXPECT_EQ(m_changes, 3);

    state().isAuthenticated = false;
    EXPECT_TRUE(m_viewModel.offersSignIn());
    state().isStarting = true;
    EXPECT_FALSE(m_viewModel.offersSignIn()) << "while the start may find a session";
}

TEST_F(PopoverScreen, tellsTheDayInFigures)
{
    state().isAuthenticated = true;
    state().blockRules = std::vector{rule("r1", "news"), BlockRule{.id = "r2", .enabled = false}};
    ASSERT_THAT(m_viewModel.statuses(), SizeIs(3)) << "without a budget";
    EXPECT_EQ(m_viewModel.statuses()[1].value, "4");
    EXPECT_EQ(m_viewModel.statuses()[2].value, "1");
    EXPECT_FALSE(m_viewModel.hasBudget());

    const auto& all = tokens();

    const struct
    {
        ScreenTimeBudget budget;
        QString remaining;
        QColor color;
        double fraction;
    } cases[] = {
        {{.dailyLimitMinutes = 60, .usedMinutesToday = 29}, "0h 31m", all.sgSuccess, 29 / 60.0},
        {{.dailyLimitMinutes = 60, .usedMinutesToday = 30}, "0h 30m", all.sgWarning, 0.5},
        {{.dailyLimitMinutes = 60, .usedMinutesToday = 60}, "0h 0m", all.sgDanger, 1},
        {{.dailyLimitMinutes = 60, .usedMinutesToday = 70}, "0h 0m", all.sgDanger, 70 / 60.0},
        {{.usedMinutesToday = 45}, "0h 0m", all.sgDanger, 45},
    };

    for (const auto& [budget, remaining, color, fraction] : cases) {
        state().budget = budget;
        ASSERT_THAT(m_viewModel.statuses(), SizeIs(4));
        EXPECT_EQ(m_viewModel.statuses()[3].value, remaining);
        EXPECT_EQ(m_viewModel.statuses()[3].color, color) << remaining.toStdString();
        EXPECT_DOUBLE_EQ(m_viewModel.budgetFraction(), fraction);
    }
    state().budget = ScreenTimeBudget{.dailyLimitMinutes = 60, .earnedMinutesToday = 15, .pendingTaskCount = 2};
    ASSERT_THAT(m_viewModel.statuses(), SizeIs(6));
    EXPECT_EQ(m_viewModel.statuses()[3].value, "1h 15m");
    EXPECT_EQ(m_viewModel.statuses()[4].value, "+15m");
    EXPECT_EQ(m_viewModel.statuses()[5].value, "2");
}

TEST_F(PopoverScreen, copiesTheCodeAndTheInvitation)
{
    EXPECT_EQ(m_viewModel.sharingCode(), "") << "there is nothing to share";
    state().sharingCode = "K7QX2M";
    m_viewModel.copyCode();
    EXPECT_EQ(m_pasteboard.text, "K7QX2M");
    m_viewModel.copyInviteLink();
    EXPECT_EQ(m_pasteboard.text, "https://stillgate.example/src/pages/auth/login.html?invite=K7QX2M");
}

TEST_F(PopoverScreen, quickBlockOpensItsSheetWhenTheTabCanListen)
{
    state().isAuthenticated = true;
    const auto navigation = m_notifications.observeWithInfo(
        sgNavigateToTab, [this](const UserInfo& info) { m_done.push_back("tab " + std::to_string(info.at("tab"))); });
    const auto sheet = m_notifications.observe(sgShowQuickBlock, note("sheet"));
    EXPECT_TRUE(m_viewModel.performKey("B"));
    EXPECT_THAT(m_done, ElementsAre("show settings", "tab 3"));
    m_time.advance(299ms);
    EXPECT_THAT(m_done, SizeIs(2));
    m_time.advance(1ms);
    EXPECT_EQ(m_done.back(), "sheet");
}

TEST_F(PopoverScreen, rowsAndKeysDoTheSame)
{
    for (const auto* key : {"R", "D", "B"})
        EXPECT_FALSE(m_viewModel.performKey(key)) << "nobody is signed in";
    state().isAuthenticated = true;
    EXPECT_FALSE(m_viewModel.performKey("X"));
    for (const auto& action : m_viewModel.actions().sliced(1))
        m_viewModel.perform(action.keyHint);
    EXPECT_THAT(m_done, ElementsAre("show settings", "show settings", "show settings", "refresh", "quit"));
    const auto request = m_notifications.observe(sgOpenAuthWindow, note("sign in"));
    m_viewModel.signIn();
    EXPECT_EQ(m_done.back(), "sign in");
}

} // namespace stillgate
