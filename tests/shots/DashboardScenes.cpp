#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

constexpr int dashboardTab = 0;

SGTask task(const std::string& title, const std::string& status)
{
    return {.id = title, .title = title, .rewardMinutes = 30, .status = status};
}

void empty(Stage& stage)
{
    stage.signIn();
    stage.state.isBlockingActive = false;
    stage.openSettings(dashboardTab);
}

void wholeDay(Stage& stage)
{
    stage.signIn();
    stage.state.streak = Streak{.currentStreakDays = 128};
    stage.monitor.blockedAppAttempts = 14;
    stage.state.devices = std::vector<SGDevice>{{.id = "d1", .platform = "macos", .isActive = true}};
    stage.state.budget = ScreenTimeBudget{.dailyLimitMinutes = 90, .earnedMinutesToday = 15, .usedMinutesToday = 62};
    stage.state.tasks = std::vector{task("Read for half an hour", "pending"), task("Take out the bins", "pending"),
        task("Write to grandmother, and tell her about the summer and everything that happened", "pending"),
        task("A fourth one", "pending"), task("Practise the piano", "approved")};
    stage.state.schedules = std::vector<BlockSchedule>{{.id = "s1",
        .name = "Deep work",
        .scheduleType = "recurring",
        .days = std::vector<std::string>{"mon", "tue"},
        .startTime = "09:00",
        .endTime = "17:00",
        .enabled = true}};
    stage.state.blockRules = std::vector<BlockRule>{
        {.id = "r1", .category = "social_media", .enabled = true, .unblockPolicy = "flexible"},
        {.id = "r2", .category = "gaming", .enabled = false, .unblockPolicy = "permanent"},
    };
    stage.openSettings(dashboardTab);
}

constexpr Scene scenes[] = {
    {"dashboard", "empty", empty},
    {"dashboard", "whole-day", wholeDay},
};

} // namespace

std::span<const Scene> dashboardScenes()
{
    return scenes;
}

} // namespace stillgate::test
