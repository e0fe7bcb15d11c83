#include "Views/Schedules/SchedulesViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

#include <QQuickItem>

namespace stillgate::test
{

namespace
{

constexpr int schedulesTab = 4;

BlockSchedule schedule(const std::string& name, std::vector<std::string> days, bool isEnabled = true)
{
    return {.id = name,
        .name = name,
        .scheduleType = "recurring",
        .days = std::move(days),
        .startTime = "09:00",
        .endTime = "17:00",
        .timezone = "Europe/Istanbul",
        .enabled = isEnabled};
}

SchedulesViewModel& show(Stage& stage, std::vector<BlockSchedule> schedules = {})
{
    stage.signIn();
    stage.state.schedules = std::move(schedules);
    stage.openSettings(schedulesTab);
    return stage.tabViewModel<SchedulesViewModel>();
}

void none(Stage& stage)
{
    show(stage);
}

void some(Stage& stage)
{
    auto always = schedule("Calm home", {});
    always.scheduleType = "always";
    auto homework = schedule("Homework", {"mon", "tue", "wed", "thu", "fri"});
    homework.ruleIds = {"r1", "r2", "r3"};
    auto bare = schedule("Whenever", {}, false);
    bare.startTime = bare.endTime = std::nullopt;
    show(stage, {always, homework, schedule("Sunday morning", {"sun"}, false), bare});
}

void longTexts(Stage& stage)
{
    auto wordy = schedule("The hours after school when everybody sits at the kitchen table and nobody looks at a phone",
        {"mon", "tue", "wed", "thu", "fri", "sat", "sun"});
    wordy.startTime = "as soon as we are home from school";
    wordy.ruleIds = {"r1"};
    show(stage,
        {wordy, schedule("Donaudampfschifffahrtsgesellschaftskapitänsmützenausleihzeit", {"sat", "sun"}, false)});
}

void many(Stage& stage)
{
    std::vector<BlockSchedule> all;
    for (int number = 1; number <= 1000; ++number)
        all.push_back(schedule("Schedule " + std::to_string(number), {"mon", "wed"}, number % 3 != 0));
    show(stage, std::move(all));
}

CreateScheduleViewModel& showSheet(Stage& stage)
{
    auto& viewModel = show(stage);
    viewModel.openCreateSheet();
    return *viewModel.createSheet();
}

void create(Stage& stage)
{
    showSheet(stage);
}

void createAlways(Stage& stage)
{
    auto& sheet = showSheet(stage);
    sheet.setName("Calm home");
    sheet.chooseType(0);
}

void creating(Stage& stage)
{
    auto& sheet = showSheet(stage);
    sheet.setName("Homework");
    stage.backend.hold("createSchedule");
    sheet.create();
}

void deleting(Stage& stage)
{
    show(stage, {schedule("Homework", {"mon", "tue"})}).askToDelete("Homework");
}

constexpr Scene scenes[] = {
    {"schedules", "none", none},
    {"schedules", "some", some},
    {"schedules", "long-texts", longTexts},
    {"schedules", "many", many},
    {"schedules", "create", create},
    {"schedules", "create-always", createAlways},
    {"schedules", "creating", creating},
    {"schedules", "deleting", deleting},
};

} // namespace

std::span<const Scene> scheduleScenes()
{
    return scenes;
}

} // namespace stillgate::test
