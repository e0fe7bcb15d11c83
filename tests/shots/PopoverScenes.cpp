#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;

void protectedSession(Stage& stage)
{
    stage.state.isAuthenticated = true;
    stage.openPopover();
}

void unprotectedSession(Stage& stage)
{
    stage.state.isBlockingActive = false;
    protectedSession(stage);
}

void wholeDayOffline(Stage& stage)
{
    stage.state.isOffline = true;
    stage.state.streak = Streak{.currentStreakDays = 128};
    stage.state.sharingCode = "K7QX2M";
    stage.state.budget = ScreenTimeBudget{
        .dailyLimitMinutes = 90, .earnedMinutesToday = 15, .usedMinutesToday = 88, .pendingTaskCount = 3};
    stage.state.blockRules = std::vector{rule("r1", std::nullopt), rule("r2", std::nullopt)};
    stage.monitor.blockedAppAttempts = 7;
    stage.monitor.activeQuickBlock =
        QuickBlockSession{.bundleIds = {"a", "b"}, .expiresAt = stage.time.now() + 29min, .durationMinutes = 30};
    protectedSession(stage);
}

void usedUpDay(Stage& stage)
{
    stage.state.budget = ScreenTimeBudget{.dailyLimitMinutes = 60, .usedMinutesToday = 95};
    protectedSession(stage);
}

} // namespace

std::vector<Scene> popoverScenes()
{
    return {
        {"popover", "signed-out", [](Stage& stage) { stage.openPopover(); }},
        {"popover", "protected", protectedSession},
        {"popover", "not-protected", unprotectedSession},
        {"popover", "whole-day-offline", wholeDayOffline},
        {"popover", "used-up-day", usedUpDay},
    };
}

} // namespace stillgate::test
