#pragma once

#include "Models/Date.h"
#include "Models/Record.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// A task that earns screen-time minutes.
struct SGTask
{
    std::string id;
    std::optional<std::string> groupId;
    std::string assignerId;
    std::string assigneeId;
    std::string title;
    std::optional<std::string> description;
    std::optional<std::string> emoji;
    std::int64_t rewardMinutes = 0; ///< earned on approval
    std::optional<Date> dueDate;
    std::optional<std::string> repeatType; ///< "once", "daily", "weekly"
    std::optional<bool> requiresProof;
    std::string status; ///< "pending", "completed" (waits for the assigner), "approved", "rejected"
    std::optional<Date> completedAt;
    std::optional<Date> approvedAt;
    std::optional<std::string> rejectedReason;
    std::optional<Date> createdAt;
    std::optional<Date> updatedAt;
    std::optional<std::string> assignerName;

    STILLGATE_RECORD(SGTask, id, groupId, assignerId, assigneeId, title, description, emoji, rewardMinutes, dueDate,
        repeatType, requiresProof, status, completedAt, approvedAt, rejectedReason, createdAt, updatedAt, assignerName);
};

/// The tasks of a user as assignee, then those as assigner that are not among them, in the order given.
[[nodiscard]] std::vector<SGTask> mergedTasks(std::vector<SGTask> asAssignee, const std::vector<SGTask>& asAssigner);

struct CreateTaskBody
{
    std::optional<std::string> groupId;
    std::optional<std::string> assigneeId; ///< none means the caller
    std::string title;
    std::optional<std::string> description;
    std::optional<std::string> emoji;
    std::int64_t rewardMinutes = 0;
    std::optional<std::string> dueDate;
    std::string repeatType;
    bool requiresProof = false;

    STILLGATE_RECORD(CreateTaskBody, groupId, assigneeId, title, description, emoji, rewardMinutes, dueDate, repeatType,
        requiresProof);
};

struct TaskProof
{
    std::string type;
    std::string content;
    std::optional<std::string> url;

    STILLGATE_RECORD(TaskProof, type, content, url);
};

struct TaskTemplate
{
    std::string emoji;
    std::string title;
    std::string description;
    std::string category;
    std::int64_t rewardMinutes = 0;

    STILLGATE_RECORD(TaskTemplate, emoji, title, description, category, rewardMinutes);
};

} // namespace stillgate
