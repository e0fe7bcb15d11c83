#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

void show(Stage& stage, Streak streak)
{
    stage.state.streak = std::move(streak);
    stage.openTab(settingstab::streak);
}

/// On a Thursday.
void threeDays(Stage& stage)
{
    show(stage,
        {.currentStreakDays = 3,
            .longestStreakDays = 17,
            .streakStartDate = "2026-01-13",
            .lastActiveDate = "2026-01-15"});
}

void years(Stage& stage)
{
    stage.time.setCivilTime(Date{std::chrono::sys_days{std::chrono::year{2026} / 1 / 18}}); // a Sunday
    show(stage,
        {.currentStreakDays = 12'345,
            .longestStreakDays = 12'345,
            .streakStartDate = "1992-04-01",
            .lastActiveDate = "2026-01-18T08:30:00.000+03:00"});
}

void withoutPictures(Stage& stage)
{
    stage.bundle.folder = "/nowhere";
    show(stage, {.currentStreakDays = 14, .longestStreakDays = 14});
}

} // namespace

std::vector<Scene> streakScenes()
{
    return {
        {"streak", "none", [](Stage& stage) { show(stage, {}); }},
        {"streak", "three-days", threeDays},
        {"streak", "years", years},
        {"streak", "without-pictures", withoutPictures},
    };
}

} // namespace stillgate::test
