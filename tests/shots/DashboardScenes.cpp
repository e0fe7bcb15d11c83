#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

void empty(Stage& stage)
{
    stage.state.isBlockingActive = false;
    stage.openTab(settingstab::dashboard);
}

void wholeDay(Stage& stage)
{
    stage.state.streak = Streak{.currentStreakDays = 128};
    stage.monitor.blockedAppAttempts = 14;
    stage.state.devices = std::vector{device("d1", "macos")};
    stage.state.budget = ScreenTimeBudget{.dailyLimitMinutes = 90, .earnedMinutesToday = 15, .usedMinutesToday = 62};
    stage.state.tasks = std::vector{task("t1", "Read for half an hour"), task("t2", "Take out the bins"),
        task("t3", "Write to grandmother, and tell her about the summer and everything that happened"),
        task("t4", "A fourth one")};
    stage.state.schedules = std::vector<BlockSchedule>{{.id = "s1",
        .name = "Deep work",
        .scheduleType = "recurring",
        .days = std::vector<std::string>{"mon", "tue"},
        .startTime = "09:00",
        .endTime = "17:00",
        .enabled = true}};
    stage.state.blockRules = std::vector{rule("r1", "social_media"), rule("r2", "gaming")};
    stage.openTab(settingstab::dashboard);
}

} // namespace

std::vector<Scene> dashboardScenes()
{
    return {
        {"dashboard", "empty", empty},
        {"dashboard", "whole-day", wholeDay},
    };
}

} // namespace stillgate::test
