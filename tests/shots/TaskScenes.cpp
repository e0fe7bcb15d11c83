#include "Views/Tasks/TasksViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

SGTask taskOf(const std::string& title, const std::string& status, std::int64_t minutes = 30)
{
    auto made = task(title, title);
    made.status = status;
    made.rewardMinutes = minutes;
    made.assignerName = "Ada";
    return made;
}

std::vector<SGTask> everyStatus()
{
    auto proof = taskOf("Clean the aquarium", "pending", 45);
    proof.requiresProof = true;
    return {taskOf("Read for half an hour", "pending"), proof, taskOf("Take the dog for a walk", "completed", 0),
        taskOf("Practise the piano", "approved", 20), taskOf("Water the flowers", "approved", 0),
        taskOf("Write to grandmother", "rejected", 15), taskOf("Something from the future", "postponed", 5)};
}

TasksViewModel& open(Stage& stage)
{
    return stage.openTab<TasksViewModel>(settingstab::tasks);
}

TasksViewModel& openWith(Stage& stage, const std::vector<SGTask>& tasks)
{
    stage.backend.tasks.insert_or_assign("assignee", tasks);
    stage.backend.tasks.insert_or_assign("assigner", tasks);
    return open(stage);
}

void loading(Stage& stage)
{
    stage.backend.hold("getTasks assignee");
    open(stage);
}

void noneOfAKind(Stage& stage)
{
    openWith(stage, {taskOf("Read for half an hour", "completed")}).selectFilter(1);
}

void longTexts(Stage& stage)
{
    auto wordy = taskOf(
        "Tidy up the whole cellar together with your brother and carry what nobody needs to the depot", "pending", 120);
    wordy.requiresProof = true;
    wordy.assignerName = "Augusta Ada King, Countess of Lovelace, born Byron";
    auto unbroken = taskOf("Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetz", "approved", 1'000'000);
    unbroken.assignerName = "Donaudampfschifffahrtsgesellschaftskapitänsmützenausleihzeit";
    openWith(stage,
        {wordy, unbroken, taskOf("Done, and long enough to need a second line in a narrow window", "completed")});
}

void many(Stage& stage)
{
    std::vector<SGTask> all;
    for (int number = 1; number <= 1000; ++number)
        all.push_back(taskOf("Task " + std::to_string(number), number % 2 == 0 ? "pending" : "completed"));
    openWith(stage, all);
}

CreateTaskViewModel& openSheet(Stage& stage)
{
    auto& viewModel = open(stage);
    viewModel.openCreateSheet();
    return *viewModel.createSheet();
}

void creating(Stage& stage)
{
    auto& sheet = openSheet(stage);
    sheet.setProperty("title", "Read for half an hour");
    sheet.setProperty("requiresProof", true);
    stage.backend.hold("createTask");
    sheet.create();
}

} // namespace

std::vector<Scene> taskScenes()
{
    return {
        {"tasks", "loading", loading},
        {"tasks", "none", [](Stage& stage) { open(stage); }},
        {"tasks", "none-given", [](Stage& stage) { open(stage).selectSegment(1); }},
        {"tasks", "none-of-a-kind", noneOfAKind},
        {"tasks", "mine", [](Stage& stage) { openWith(stage, everyStatus()); }},
        {"tasks", "given", [](Stage& stage) { openWith(stage, everyStatus()).selectSegment(1); }},
        {"tasks", "long-texts", longTexts},
        {"tasks", "many", many},
        {"tasks", "create", [](Stage& stage) { openSheet(stage); }},
        {"tasks", "creating", creating},
    };
}

} // namespace stillgate::test
