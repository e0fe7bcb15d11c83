#include "Views/Tasks/TasksViewModel.h"

#include "tests/support/FakeBackend.h"
#include "tests/support/Matchers.h"
#include "tests/support/TextsInUse.h"

namespace stillgate
{

using namespace test;

namespace
{

SGTask task(const std::string& id, const std::string& status)
{
    return {.id = id, .title = "Task " + id, .status = status};
}

} // namespace

class Tasks : public testing::Test
{
protected:
    using List = std::vector<SGTask>;

    void serve(List mine, List given)
    {
        m_backend.tasks.insert_or_assign("assignee", std::move(mine));
        m_backend.tasks.insert_or_assign("assigner", std::move(given));
    }

    TasksViewModel& viewModel()
    {
        if (!m_viewModel)
            m_viewModel = std::make_unique<TasksViewModel>(m_backend);
        return *m_viewModel;
    }

    /// What the screen shows: "id, status" in each row.
    std::vector<std::string> shown()
    {
        std::vector<std::string> rows;
        auto& model = *viewModel().tasks();
        for (int at = 0; at < model.rowCount(); ++at) {
            const auto row = model.data(model.index(at, 0), Qt::UserRole).value<TaskRow>();
            rows.push_back(row.id.toStdString() + ", " + row.statusText.toStdString());
        }
        return rows;
    }

    FakeBackend m_backend;
    std::unique_ptr<TasksViewModel> m_viewModel;
};

TEST(TaskRows, offerWhatTheStatusAllows)
{
    using enum TaskSide;

    const struct
    {
        const char* status;
        bool needsProof;
        TaskSide side;
        QString completeTitle;
        bool canBeJudged;
        QString earnedText;
    } cases[] = {
        {"pending", false, assignee, "tasks.complete", false, ""},
        {"pending", true, assignee, "mobile.photoProof.uploadProof", false, ""},
        {"pending", false, assigner, "", false, ""},
        {"completed", true, assignee, "", false, ""},
        {"completed", true, assigner, "", true, ""},
        {"approved", false, assignee, "", false, "+5m"},
        {"rejected", false, assigner, "", false, ""},
        {"postponed", false, assignee, "", false, ""},
    };

    for (const auto& [status, needsProof, side, completeTitle, canBeJudged, earnedText] : cases) {
        auto shown = task("t1", status);
        shown.rewardMinutes = 5;
        shown.requiresProof = needsProof;
        const auto row = taskRow(shown, side);
        EXPECT_EQ(row.completeTitle, completeTitle) << status;
        EXPECT_EQ(row.completeSymbol, needsProof && !completeTitle.isEmpty() ? "camera.fill" : "");
        EXPECT_EQ(row.canBeJudged, canBeJudged) << status;
        EXPECT_EQ(row.earnedText, earnedText) << status;
    }
    EXPECT_EQ(taskRow(task("t1", "postponed"), assignee).statusText, "postponed");
}

TEST(TaskRows, saveTheirWordsWhereThereIsNothingToSay)
{
    const TextsInUse texts{R"({"tasks": {"from": "From {{name}}"}})"};
    auto given = task("t1", "approved");
    EXPECT_EQ(taskRow(given, TaskSide::assignee).fromText, "");
    EXPECT_EQ(taskRow(given, TaskSide::assignee).rewardText, "");
    EXPECT_EQ(taskRow(given, TaskSide::assignee).earnedText, "") << "nothing was to be earned";
    given.assignerName = "Ada";
    EXPECT_EQ(taskRow(given, TaskSide::assignee).fromText, "From Ada");
    EXPECT_EQ(taskRow(given, TaskSide::assigner).fromText, "");
}

TEST_F(Tasks, areFilteredAndCountedWithinTheSegment)
{
    serve({task("a", "pending"), task("b", "approved"), task("c", "completed"), task("d", "pending")},
        {task("e", "rejected")});
    EXPECT_THAT(
        viewModel().filterTitles(), ElementsAre("common.viewAll · 4", "common.inProgress · 2", "common.completed · 1"));
    EXPECT_THAT(shown(), SizeIs(4));
    viewModel().selectFilter(1);
    EXPECT_THAT(shown(), ElementsAre("a, tasks.pending", "d, tasks.pending"));
    EXPECT_EQ(viewModel().emptySymbol(), "");

    viewModel().selectSegment(1);
    EXPECT_THAT(
        viewModel().filterTitles(), ElementsAre("common.viewAll · 1", "common.inProgress · 0", "common.completed · 0"));
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(viewModel().emptySymbol(), "clock");
    viewModel().selectFilter(0);
    EXPECT_THAT(shown(), ElementsAre("e, tasks.rejected"));
}

TEST_F(Tasks, areLoadedOneListAfterTheOtherAndAFailedOneIsEmpty)
{
    serve({task("a", "pending")}, {});
    m_backend.tasks.insert_or_assign("assigner", FakeBackend::unreachable());
    m_backend.hold("getTasks assignee");
    EXPECT_TRUE(viewModel().isLoading());
    EXPECT_EQ(viewModel().emptySymbol(), "") << "nobody knows yet";
    EXPECT_THAT(m_backend.calls, ElementsAre("getTasks assignee"));
    m_backend.release("getTasks assignee");
    EXPECT_FALSE(viewModel().isLoading());
    EXPECT_THAT(m_backend.calls, ElementsAre("getTasks assignee", "getTasks assigner"));
    EXPECT_THAT(shown(), SizeIs(1));
    viewModel().selectSegment(1);
    EXPECT_EQ(viewModel().emptySymbol(), "person.badge.plus");
}

TEST_F(Tasks, completedOneIsShownSoAtOnceAndThenAsTheServerHasIt)
{
    serve({task("a", "pending"), task("b", "pending")}, {task("a", "pending")});
    viewModel().selectFilter(1);
    m_backend.task = task("a", "approved");
    m_backend.hold("completeTask a");
    m_backend.calls.clear();
    viewModel().complete("a");
    EXPECT_THAT(shown(), ElementsAre("b, tasks.pending")) << "it is no longer in progress";
    m_backend.release("completeTask a");
    viewModel().selectFilter(0);
    EXPECT_THAT(shown(), ElementsAre("a, tasks.approved", "b, tasks.pending"));
    EXPECT_THAT(m_backend.calls, ElementsAre("completeTask a")) << "without a proof, and nothing is loaded again";
    viewModel().selectSegment(1);
    EXPECT_THAT(shown(), ElementsAre("a, tasks.approved")) << "who gave it to themselves sees it on both sides";

    viewModel().selectSegment(0);
    m_backend.task = FakeBackend::unreachable();
    viewModel().complete("b");
    EXPECT_THAT(shown(), ElementsAre("a, tasks.pending", "b, tasks.pending")) << "what the server still holds";
}

TEST_F(Tasks, areLoadedAgainAfterAJudgementWhateverBecameOfIt)
{
    serve({}, {task("a", "completed")});
    viewModel().selectSegment(1);
    m_backend.calls.clear();
    serve({}, {task("a", "approved")});
    viewModel().approve("a");
    EXPECT_THAT(shown(), ElementsAre("a, tasks.approved"));
    m_backend.task = task("a", "rejected");
    serve({}, {task("a", "rejected")});
    viewModel().reject("a");
    EXPECT_THAT(shown(), ElementsAre("a, tasks.rejected"));
    EXPECT_THAT(m_backend.calls,
        ElementsAre("approveTask a", "getTasks assignee", "getTasks assigner", "rejectTask a", "getTasks assignee",
            "getTasks assigner"));
}

TEST_F(Tasks, onlyTheLastLoadCounts)
{
    m_backend.isSlowToCancel = true;
    serve({task("a", "pending")}, {});
    m_backend.hold("getTasks assignee");
    viewModel();
    const auto first = m_backend.takeHold("getTasks assignee");
    viewModel().reject("b");
    EXPECT_FALSE(viewModel().isLoading());
    serve({task("old", "pending")}, {});
    m_backend.calls.clear();
    first->happen();
    EXPECT_THAT(shown(), ElementsAre("a, tasks.pending"));
    EXPECT_THAT(m_backend.calls, ElementsAre("cancelled getTasks assignee")) << "and it asks for nothing more";

    m_backend.hold("getTasks assignee");
    viewModel().reject("b");
    m_viewModel.reset();
    m_backend.release("getTasks assignee"); // to nobody
}

TEST_F(Tasks, newOneIsTheUsersOwnAndTheFormGoesWithTheReload)
{
    serve({}, {});
    viewModel().openCreateSheet();
    auto& sheet = *viewModel().createSheet();
    sheet.create();
    EXPECT_THAT(m_backend.sentTasks, IsEmpty()) << "without a title";
    sheet.setProperty("title", " ");
    sheet.setProperty("selectedEmoji", 2);
    sheet.setProperty("rewardMinutes", 0);
    sheet.setProperty("selectedRepeat", 1);
    m_backend.hold("createTask");
    m_backend.hold("getTasks assigner");
    sheet.create();
    sheet.create();
    EXPECT_THAT(m_backend.sentTasks, SizeIs(1));
    const CreateTaskBody expected{.title = " ", .emoji = "🏃", .rewardMinutes = 0, .repeatType = "daily"};
    EXPECT_EQ(m_backend.sentTasks.front(), expected);

    serve({task("new", "pending")}, {});
    m_backend.release("createTask"); // with a failure
    EXPECT_NE(viewModel().createSheet(), nullptr) << "until the list is there";
    m_backend.release("getTasks assigner");
    EXPECT_EQ(viewModel().createSheet(), nullptr);
    EXPECT_THAT(shown(), ElementsAre("new, tasks.pending"));
}

TEST_F(Tasks, formThatIsLeftClosesNoOtherOneAndItsTaskIsShown)
{
    serve({}, {});
    m_backend.hold("createTask");
    viewModel().openCreateSheet();
    viewModel().createSheet()->setProperty("title", "Read");
    viewModel().createSheet()->create();
    viewModel().closeCreateSheet();
    viewModel().openCreateSheet();
    serve({task("new", "pending")}, {});
    m_backend.release("createTask");
    EXPECT_NE(viewModel().createSheet(), nullptr);
    EXPECT_THAT(shown(), SizeIs(1));
}

} // namespace stillgate
