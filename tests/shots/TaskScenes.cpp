#include "Views/Tasks/TasksViewModel.h"
#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

namespace
{

constexpr int tasksTab = 6;

SGTask task(const std::string& title, const std::string& status, std::int64_t minutes = 30)
{
    return {.id = title,
        .title = title,
        .rewardMinutes = minutes,
        .requiresProof = false,
        .status = status,
        .assignerName = "Ada"};
}

std::vector<SGTask> everyStatus()
{
    auto proof = task("Clean the aquarium", "pending", 45);
    proof.requiresProof = true;
    return {task("Read for half an hour", "pending"), proof, task("Take the dog for a walk", "completed", 0),
        task("Practise the piano", "approved", 20), task("Water the flowers", "approved", 0),
        task("Write to grandmother", "rejected", 15), task("Something from the future", "postponed", 5)};
}

TasksViewModel& openTab(Stage& stage)
{
    stage.signIn();
    stage.openSettings(tasksTab);
    return stage.tabViewModel<TasksViewModel>();
}

TasksViewModel& openWith(Stage& stage, const std::vector<SGTask>& tasks)
{
    stage.backend.tasks.insert_or_assign("assignee", tasks);
    stage.backend.tasks.insert_or_assign("assigner", tasks);
    return openTab(stage);
}

void loading(Stage& stage)
{
    stage.backend.hold("getTasks assignee");
    openTab(stage);
}

void none(Stage& stage)
{
    openTab(stage);
}

void noneGiven(Stage& stage)
{
    openTab(stage).selectSegment(1);
}

void noneOfAKind(Stage& stage)
{
    openWith(stage, {task("Read for half an hour", "completed")}).selectFilter(1);
}

void mine(Stage& stage)
{
    openWith(stage, everyStatus());
}

void given(Stage& stage)
{
    openWith(stage, everyStatus()).selectSegment(1);
}

void longTexts(Stage& stage)
{
    auto wordy = task(
        "Tidy up the whole cellar together with your brother and carry what nobody needs to the depot", "pending", 120);
    wordy.requiresProof = true;
    wordy.assignerName = "Augusta Ada King, Countess of Lovelace, born Byron";
    auto unbroken = task("Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetz", "approved", 1'000'000);
    unbroken.assignerName = "Donaudampfschifffahrtsgesellschaftskapitänsmützenausleihzeit";
    openWith(
        stage, {wordy, unbroken, task("Done, and long enough to need a second line in a narrow window", "completed")});
}

void many(Stage& stage)
{
    std::vector<SGTask> all;
    for (int number = 1; number <= 1000; ++number)
        all.push_back(task("Task " + std::to_string(number), number % 2 == 0 ? "pending" : "completed"));
    openWith(stage, all);
}

CreateTaskViewModel& openSheet(Stage& stage)
{
    auto& viewModel = openTab(stage);
    viewModel.openCreateSheet();
    return *viewModel.createSheet();
}

void create(Stage& stage)
{
    openSheet(stage);
}

void creating(Stage& stage)
{
    auto& sheet = openSheet(stage);
    sheet.setProperty("title", "Read for half an hour");
    sheet.setProperty("requiresProof", true);
    stage.backend.hold("createTask");
    sheet.create();
}

constexpr Scene scenes[] = {
    {"tasks", "loading", loading},
    {"tasks", "none", none},
    {"tasks", "none-given", noneGiven},
    {"tasks", "none-of-a-kind", noneOfAKind},
    {"tasks", "mine", mine},
    {"tasks", "given", given},
    {"tasks", "long-texts", longTexts},
    {"tasks", "many", many},
    {"tasks", "create", create},
    {"tasks", "creating", creating},
};

} // namespace

std::span<const Scene> taskScenes()
{
    return scenes;
}

} // namespace stillgate::test
