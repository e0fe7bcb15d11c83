#include "Models/Tasks.h"

#include <unordered_set>

namespace stillgate
{

std::vector<SGTask> mergedTasks(std::vector<SGTask> asAssignee, const std::vector<SGTask>& asAssigner)
{
    std::unordered_set<std::string> assigneeIds;
    for (const auto& task : asAssignee)
        assigneeIds.insert(task.id);
    for (const auto& task : asAssigner) {
        if (!assigneeIds.contains(task.id))
            asAssignee.push_back(task);
    }
    return asAssignee;
}

} // namespace stillgate
