#include "Views/Tasks/TaskRows.h"

#include "DesignSystem/Tokens.h"
#include "Views/Common/TextOf.h"

#include <algorithm>

namespace stillgate
{

namespace
{

constexpr struct
{
    std::string_view status;
    const char* symbol;
    const QColor Tokens::* color;
    const char* text;
} markings[] = {
    {"pending", "circle.dashed", &Tokens::sgAccent, "tasks.pending"},
    {"completed", "clock.badge.checkmark", &Tokens::sgWarning, "tasks.completed"},
    {"approved", "checkmark.circle.fill", &Tokens::sgSuccess, "tasks.approved"},
    {"rejected", "xmark.circle", &Tokens::sgDanger, "tasks.rejected"},
};

void offer(TaskRow& row, const SGTask& task, TaskSide side)
{
    if (side == TaskSide::assigner) {
        row.canBeJudged = task.status == "completed";
        return;
    }
    if (task.status != "pending")
        return;
    const bool needsProof = task.requiresProof.value_or(false);
    row.completeTitle = textOf(needsProof ? "mobile.photoProof.uploadProof" : "tasks.complete");
    row.completeSymbol = needsProof ? "camera.fill" : "";
}

} // namespace

TaskMark taskMark(const std::string& status)
{
    const auto* marking = std::ranges::find(markings, status, [](const auto& each) { return each.status; });
    const bool isKnown = marking != std::end(markings);
    const auto& look = isKnown ? *marking : markings[0];
    return {look.symbol, tokens().*look.color, isKnown ? textOf(look.text) : QString::fromStdString(status)};
}

TaskRow taskRow(const SGTask& task, TaskSide side)
{
    const auto mark = taskMark(task.status);
    TaskRow row{
        .id = QString::fromStdString(task.id),
        .title = QString::fromStdString(task.title),
        .symbol = mark.symbol,
        .color = mark.color,
        .statusText = mark.text,
    };
    offer(row, task, side);
    if (task.rewardMinutes >= 1) {
        row.rewardText = QString::number(task.rewardMinutes) + 'm';
        row.earnedText = task.status == "approved" ? '+' + row.rewardText : QString{};
    }
    if (task.assignerName && side == TaskSide::assignee)
        row.fromText = textOf("tasks.from", {{"name", *task.assignerName}});
    return row;
}

} // namespace stillgate
