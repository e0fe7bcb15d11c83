#include "API/Tasks.h"

#include "API/Limits.h"
#include "API/Stored.h"
#include "Accounts/Secrets.h"
#include "Family/ActivityFeed.h"
#include "Family/Connections.h"
#include "Family/Days.h"
#include "Platform/Text.h"

namespace stillgate::server
{

namespace
{

const std::string selectTasks = "SELECT tasks.*, users.display_name AS assigner_name FROM tasks "
                                "JOIN users ON users.id = tasks.assigner_id ";

std::string timeZoneOf(Database& database, const std::string& userId)
{
    return database.first<std::string>("SELECT time_zone FROM users WHERE id = ?", userId).value();
}

/// A day alone means its end, where the assignee is.
std::optional<Date> dueDateOf(Database& database, const CreateTaskBody& body, const std::string& assigneeId)
{
    if (!body.dueDate || body.dueDate->empty())
        return std::nullopt;
    if (isDay(*body.dueDate))
        return startOfDay(dayAfter(*body.dueDate, 1), timeZoneOf(database, assigneeId)) - std::chrono::seconds{1};
    const auto date = dateFromISO8601(*body.dueDate);
    require(date.has_value(), "dueDate: YYYY-MM-DD, or a date and time of RFC 3339");
    return date;
}

void checkTask(const CreateTaskBody& body)
{
    require(!body.title.empty(), "title: required, but empty");
    requireText(body.title, longestText, "title");
    requireText(body.description, longestText, "description");
    requireText(body.emoji, longestName, "emoji");
    requireCount(body.rewardMinutes, 24 * 60, "rewardMinutes");
    require(body.repeatType == "once" || body.repeatType == "daily" || body.repeatType == "weekly",
        "repeatType: once, daily or weekly");
    require(!body.groupId || *body.groupId == "default", "groupId: default, or none");
}

/// A task that the caller has to do with, on either side or as the assignee's guardian.
SGTask taskOf(Call& call)
{
    auto task = call.database.first<SGTask>(selectTasks + "WHERE tasks.id = ?", call.argument("id"));
    const auto& userId = call.account.userId;
    if (!task ||
        (task->assigneeId != userId && task->assignerId != userId &&
            !isGuardianOf(call.database, userId, task->assigneeId)))
        throw notFound();
    return *task;
}

/// The same, for whoever may judge it: the assignee's guardians, and everybody their own. Whoever was a guardian when
/// they gave it, and is no more, has no say in what it earns.
SGTask taskToJudge(Call& call)
{
    auto task = taskOf(call);
    const auto& userId = call.account.userId;
    const bool isOwn = task.assignerId == userId && task.assigneeId == userId;
    if (!isOwn && !isGuardianOf(call.database, userId, task.assigneeId))
        throw Refusal{403, "The guardian who gave the task judges it"};
    if (task.status != "completed")
        throw Refusal{409, "The task isn't completed, or has been judged"};
    return task;
}

/// What somebody gave themselves is no news: ten of those would push a bypass out of the feed.
Response tellAndAnswer(Call& call, const SGTask& task, const std::string& eventType)
{
    if (task.assignerId != task.assigneeId)
        ActivityFeed{call.database}.addForGuardians(task.assigneeId, call.account.userId, eventType,
            {{"task", task.title}, {"minutes", std::to_string(task.rewardMinutes)}}, call.now);
    return jsonAnswer(call.database.first<SGTask>(selectTasks + "WHERE tasks.id = ?", task.id).value());
}

/// The start of the day in the assignee's time zone on which a repeating task comes again.
Date nextTimeOf(Database& database, const SGTask& task, Date now)
{
    const auto timeZone = timeZoneOf(database, task.assigneeId);
    return startOfDay(dayAfter(dayOf(now, timeZone), task.repeatType == "weekly" ? 7 : 1), timeZone);
}

/// A repeating task that has been judged comes again as a new one.
void repeatTask(Call& call, const SGTask& task)
{
    if (task.repeatType == "once")
        return;
    call.database.execute(
        "INSERT INTO tasks (id, group_id, assigner_id, assignee_id, title, description, emoji, reward_minutes, "
        "repeat_type, requires_proof, status, starts_at, created_at, updated_at) "
        "SELECT ?, group_id, assigner_id, assignee_id, title, description, emoji, reward_minutes, repeat_type, "
        "requires_proof, 'pending', ?, ?, ? FROM tasks WHERE id = ?",
        newId(), nextTimeOf(call.database, task, call.now), call.now, call.now, task.id);
}

Response list(Call& call)
{
    const auto role = call.query("role");
    require(role.empty() || role == "assignee" || role == "assigner", "role: assignee or assigner");
    const auto groupId = call.query("groupId");
    if (!groupId.empty() && groupId != "default")
        throw notFound();
    auto wanted = TaskRole::either;
    if (!role.empty())
        wanted = role == "assignee" ? TaskRole::assignee : TaskRole::assigner;
    return jsonAnswer(tasksOf(call.database, call.account.userId, wanted, call.now));
}

Response templates(Call& call)
{
    return jsonAnswer(call.database.all<TaskTemplate>(
        "SELECT * FROM task_templates WHERE language = ? ORDER BY position", call.account.language));
}

Response create(Call& call)
{
    const auto& userId = call.account.userId;
    const auto assigneeId = call.body<CreateTaskBody>().assigneeId.value_or(userId);
    if (assigneeId != userId && !isGuardianOf(call.database, userId, assigneeId))
        throw notFound();
    return createTask(call, assigneeId);
}

Response complete(Call& call)
{
    const auto task = taskOf(call);
    const auto proof = call.request.body == "{}" ? std::optional<TaskProof>{} : call.body<TaskProof>();
    if (task.assigneeId != call.account.userId)
        throw Refusal{403, "Only the one who has to do the task can complete it"};
    if (proof) {
        for (const auto& text : {std::optional{proof->type}, std::optional{proof->content}, proof->url})
            requireText(text, longestText, "TaskProof");
    }
    if (task.status == "completed")
        return jsonAnswer(task);
    if (task.status == "approved")
        throw Refusal{409, "The task has been approved already"};
    call.database.execute("UPDATE tasks SET status = 'completed', completed_at = ?, proof = ?, rejected_reason = NULL, "
                          "updated_at = ? WHERE id = ?",
        call.now, proof, call.now, task.id);
    return tellAndAnswer(call, task, "task_completed");
}

Response approve(Call& call)
{
    const auto task = taskToJudge(call);
    call.database.execute(
        "UPDATE tasks SET status = 'approved', approved_at = ?, approved_by = ?, updated_at = ? WHERE id = ?", call.now,
        call.account.userId, call.now, task.id);
    repeatTask(call, task);
    return tellAndAnswer(call, task, "task_approved");
}

Response reject(Call& call)
{
    const auto reason = call.body<RejectTaskBody>().reason;
    requireText(reason, longestText, "reason");
    const auto task = taskToJudge(call);
    call.database.execute("UPDATE tasks SET status = 'rejected', rejected_reason = ?, updated_at = ? WHERE id = ?",
        reason, call.now, task.id);
    return tellAndAnswer(call, task, "task_rejected");
}

} // namespace

std::vector<SGTask> tasksOf(Database& database, const std::string& userId, TaskRole role, Date now)
{
    const auto order = " AND tasks.starts_at <= ? ORDER BY tasks.created_at DESC, tasks.id";
    switch (role) {
    case TaskRole::assignee:
        return database.all<SGTask>(selectTasks + "WHERE tasks.assignee_id = ?" + order, userId, now);
    case TaskRole::assigner:
        return database.all<SGTask>(selectTasks + "WHERE tasks.assigner_id = ?" + order, userId, now);
    case TaskRole::either:
        break;
    }
    return database.all<SGTask>(
        selectTasks + "WHERE (tasks.assignee_id = ? OR tasks.assigner_id = ?)" + order, userId, userId, now);
}

Response createTask(Call& call, const std::string& assigneeId)
{
    const auto body = call.body<CreateTaskBody>();
    checkTask(body);
    requireRoom(call.database, "tasks", "status = 'pending' AND assigner_id", call.account.userId);
    const auto id = newId();
    call.database.execute(
        "INSERT INTO tasks (id, group_id, assigner_id, assignee_id, title, description, emoji, reward_minutes, "
        "due_date, repeat_type, requires_proof, status, starts_at, created_at, updated_at) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 'pending', ?, ?, ?)",
        id, body.groupId, call.account.userId, assigneeId, body.title, body.description, body.emoji, body.rewardMinutes,
        dueDateOf(call.database, body, assigneeId), body.repeatType, body.requiresProof, call.now, call.now, call.now);
    const auto task = call.database.first<SGTask>(selectTasks + "WHERE tasks.id = ?", id).value();
    auto answer = tellAndAnswer(call, task, "task_assigned");
    answer.status = 201;
    return answer;
}

Routes taskRoutes()
{
    return {
        {"GET", "/tasks", list},
        {"GET", "/tasks/templates", templates},
        {"POST", "/tasks", create},
        {"POST", "/tasks/{id}/complete", complete},
        {"POST", "/tasks/{id}/approve", approve},
        {"POST", "/tasks/{id}/reject", reject},
    };
}

} // namespace stillgate::server
