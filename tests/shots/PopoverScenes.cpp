#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;

void signedOut(Stage& stage)
{
    stage.openPopover();
}

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

void offlineSession(Stage& stage)
{
    stage.state.isOffline = true;
    protectedSession(stage);
}

void wholeDay(Stage& stage)
{
    stage.state.streak = Streak{.currentStreakDays = 128};
    stage.state.sharingCode = "K7QX2M";
    stage.state.budget = ScreenTimeBudget{
        .dailyLimitMinutes = 90, .earnedMinutesToday = 15, .usedMinutesToday = 88, .pendingTaskCount = 3};
    stage.state.blockRules = std::vector<BlockRule>{{.id = "r1", .enabled = true}, {.id = "r2", .enabled = false}};
    stage.monitor.blockedAppAttempts = 7;
    stage.monitor.activeQuickBlock =
        QuickBlockSession{.bundleIds = {"a", "b"}, .expiresAt = stage.time.now() + 29min, .durationMinutes = 30};
    offlineSession(stage);
}

void usedUpDay(Stage& stage)
{
    stage.state.budget = ScreenTimeBudget{.dailyLimitMinutes = 60, .usedMinutesToday = 95};
    protectedSession(stage);
}

constexpr Scene scenes[] = {
    {"popover", "signed-out", signedOut},
    {"popover", "protected", protectedSession},
    {"popover", "not-protected", unprotectedSession},
    {"popover", "offline", offlineSession},
    {"popover", "whole-day", wholeDay},
    {"popover", "used-up-day", usedUpDay},
};

} // namespace

std::span<const Scene> popoverScenes()
{
    return scenes;
}

} // namespace stillgate::test
