#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

constexpr int groupTab = 7;

void show(Stage& stage)
{
    stage.signIn();
    stage.openSettings(groupTab);
}

void loading(Stage& stage)
{
    stage.backend.hold("getGroupDashboard default");
    show(stage);
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
    show(stage);
}

void many(Stage& stage)
{
    std::vector<GroupDashboardEntry> members;
    for (int at = 0; at < 1'000; ++at)
        members.push_back({.userId = std::to_string(at),
            .displayName = "Member " + std::to_string(at),
            .role = "member",
            .streak = at % 40,
            .activeRules = at % 7,
            .screenTimeToday = at % 300});
    stage.backend.group = std::move(members);
    show(stage);
}

constexpr Scene scenes[] = {
    {"group", "loading", loading},
    {"group", "nobody", show},
    {"group", "family", family},
    {"group", "many", many},
};

} // namespace

std::span<const Scene> groupScenes()
{
    return scenes;
}

} // namespace stillgate::test
