#include "Views/Dashboard/DashboardViewModel.h"

#include "Views/Settings/SettingsViewModel.h"
#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;

namespace
{

SGTask taskIn(const std::string& status)
{
    return {.id = status, .title = status, .rewardMinutes = 30, .status = status};
}

} // namespace

class Dashboard : public AppStateFixture
{
protected:
    DashboardViewModel m_viewModel{state(), m_monitor, m_notifications};
};

TEST_F(Dashboard, budgetShowsOnlyWithALimit)
{
    EXPECT_FALSE(m_viewModel.hasLimit());
    state().budget = ScreenTimeBudget{.earnedMinutesToday = 15, .usedMinutesToday = 5};
    EXPECT_FALSE(m_viewModel.hasLimit()) << "also with earned minutes";
    state().budget = ScreenTimeBudget{.dailyLimitMinutes = 60, .earnedMinutesToday = 15, .usedMinutesToday = 30};
    EXPECT_TRUE(m_viewModel.hasLimit());
    EXPECT_EQ(m_viewModel.usedText(), "30m controller.used / 75m");
    EXPECT_DOUBLE_EQ(m_viewModel.budgetFraction(), 0.4);
}

TEST_F(Dashboard, listsTheFirstOfEverything)
{
    state().tasks = std::vector{taskIn("completed")};
    EXPECT_TRUE(m_viewModel.hasTasks());
    EXPECT_EQ(m_viewModel.tasks()->rowCount(), 0) << "neither to be done nor done";
    state().tasks = std::vector{taskIn("pending"), taskIn("approved"), taskIn("pending"), taskIn("pending"),
        taskIn("pending"), taskIn("approved")};
    EXPECT_EQ(m_viewModel.completedTasksText(), "2 common.completed");
    EXPECT_EQ(m_viewModel.tasks()->rowCount(), 3);

    state().schedules = std::vector{schedule("off", false)};
    EXPECT_FALSE(m_viewModel.hasSchedules());

    std::vector<BlockRule> rules;
    for (const auto* id : {"1", "2", "3", "4", "5", "6", "7"})
        rules.push_back({.id = id, .enabled = rules.size() < 2});
    state().blockRules = rules;
    EXPECT_EQ(m_viewModel.rules()->rowCount(), 5);
    EXPECT_EQ(m_viewModel.figures()[2].value, "2") << "those that are in force";
}

TEST_F(Dashboard, taskTellsItsState)
{
    EXPECT_EQ(dashboardTaskRow(taskIn("pending")).status, "common.inProgress");
    EXPECT_EQ(dashboardTaskRow(taskIn("approved")).status, "tasks.approved");
    EXPECT_EQ(dashboardTaskRow(taskIn("pending")).symbol, "circle.dashed");
    EXPECT_EQ(dashboardTaskRow(taskIn("rejected")).symbol, "xmark.circle");
}

TEST_F(Dashboard, bringsTheSessionUpToDate)
{
    startOnline();
    m_backend.calls.clear();
    const DashboardViewModel shownAgain{state(), m_monitor, m_notifications};
    EXPECT_THAT(m_backend.calls, Contains("getScreenTimeBudget"));
}

class SettingsScreen : public AppStateFixture
{
protected:
    [[nodiscard]] TabScreen makeTab(int tag)
    {
        m_made.push_back(tag);
        return {QUrl{QString::number(tag)}, std::make_unique<QObject>()};
    }

    std::vector<int> m_made;
    SettingsViewModel m_viewModel{state(), m_notifications, [this](int tag) { return makeTab(tag); }};
};

TEST_F(SettingsScreen, goesWhereItIsSent)
{
    EXPECT_EQ(m_viewModel.selectedTab(), 0);
    const auto go = [this](const UserInfo& info) {
        m_notifications.post(sgNavigateToTab, info);
        return m_viewModel.selectedTab();
    };
    EXPECT_EQ(go({{"tab", 6}}), 6);
    EXPECT_EQ(m_viewModel.tabSource(), QUrl{"6"});
    EXPECT_EQ(go({}), 6);
    EXPECT_EQ(go({{"tab", 99}}), 6);
    EXPECT_EQ(go({{"tab", 5}}), 6) << "there is no such screen yet";
    EXPECT_EQ(go({{"tab", 6}}), 6);
    EXPECT_THAT(m_made, ElementsAre(0, 6)) << "a tab that is shown is not made again";
    state().isAuthenticated = true;
    EXPECT_THAT(m_made, ElementsAre(0, 6, 6)) << "but for another user";
}

TEST_F(SettingsScreen, arrowKeysGoFromTabToTab)
{
    m_viewModel.move(-1);
    EXPECT_EQ(m_viewModel.selectedTab(), 0);
    m_viewModel.move(3);
    EXPECT_EQ(m_viewModel.selectedTab(), 3);
    m_viewModel.select(11);
    m_viewModel.move(1);
    EXPECT_EQ(m_viewModel.selectedTab(), 11);
}

TEST_F(SettingsScreen, namesWhoIsSignedIn)
{
    EXPECT_EQ(m_viewModel.userName(), "");
    EXPECT_EQ(m_viewModel.userInitial(), "");
    state().currentUser = SGUser{.id = "u", .email = "ada@example.org"};
    EXPECT_EQ(m_viewModel.userName(), "ada@example.org");
    EXPECT_EQ(m_viewModel.userInitial(), "A");
    state().currentUser = SGUser{.id = "u", .email = "ada@example.org", .displayName = "👩‍💻 Ada"};
    EXPECT_EQ(m_viewModel.userInitial(), "👩‍💻") << "one character to whoever reads it";
}

} // namespace stillgate
