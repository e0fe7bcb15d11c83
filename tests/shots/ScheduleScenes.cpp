#include "Views/Schedules/SchedulesViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

BlockSchedule onDays(const std::string& name, std::vector<std::string> days, bool isEnabled = true)
{
    auto made = schedule(name, isEnabled);
    made.scheduleType = "recurring";
    made.days = std::move(days);
    made.startTime = "09:00";
    made.endTime = "17:00";
    return made;
}

SchedulesViewModel& show(Stage& stage, std::vector<BlockSchedule> schedules = {})
{
    stage.state.schedules = std::move(schedules);
    return stage.openTab<SchedulesViewModel>(settingstab::schedules);
}

void some(Stage& stage)
{
    auto homework = onDays("Homework", {"mon", "tue", "wed", "thu", "fri"});
    homework.ruleIds = {"r1", "r2", "r3"};
    auto bare = onDays("Whenever", {}, false);
    bare.startTime = bare.endTime = std::nullopt;
    show(stage, {schedule("Calm home", true), homework, onDays("Sunday morning", {"sun"}, false), bare});
}

void longTexts(Stage& stage)
{
    auto wordy = onDays("The hours after school when everybody sits at the kitchen table and nobody looks at a phone",
        {"mon", "tue", "wed", "thu", "fri", "sat", "sun"});
    wordy.startTime = "as soon as we are home from school";
    wordy.ruleIds = {"r1"};
    show(stage, {wordy, onDays("Donaudampfschifffahrtsgesellschaftskapitänsmützenausleihzeit", {"sat", "sun"}, false)});
}

CreateScheduleViewModel& showSheet(Stage& stage)
{
    auto& viewModel = show(stage);
    viewModel.openCreateSheet();
    return *viewModel.createSheet();
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

} // namespace

std::vector<Scene> scheduleScenes()
{
    return {
        {"schedules", "none", [](Stage& stage) { show(stage); }},
        {"schedules", "some", some},
        {"schedules", "long-texts", longTexts},
        {"schedules", "create", [](Stage& stage) { showSheet(stage); }},
        {"schedules", "create-always", createAlways},
        {"schedules", "creating", creating},
        {"schedules", "deleting", [](Stage& stage) { show(stage, {onDays("Rest", {"sun"})}).askToDelete("Rest"); }},
    };
}

} // namespace stillgate::test
