#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

void loading(Stage& stage)
{
    stage.backend.hold("getGroupDashboard default");
    stage.openTab(settingstab::groups);
}

void family(Stage& stage)
{
    stage.backend.group = std::vector<GroupDashboardEntry>{
        {.userId = "1",
            .displayName = "Ada",
            .role = "guardian",
            .streak = 12,
            .activeRules = 3,
            .screenTimeToday = 59},
        {.userId = "2",
            .displayName = "A grandmother who likes to be called by each of her names",
            .role = "member",
            .streak = 12'345,
            .activeRules = 1'000,
            .screenTimeToday = 1'439},
        {.userId = "3", .role = "controlled"},
    };
    stage.openTab(settingstab::groups);
}

} // namespace

std::vector<Scene> groupScenes()
{
    return {
        {"group", "loading", loading},
        {"group", "nobody", [](Stage& stage) { stage.openTab(settingstab::groups); }},
        {"group", "family", family},
    };
}

} // namespace stillgate::test
