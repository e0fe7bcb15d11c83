#include "Views/Schedules/ScheduleRows.h"

#include "Views/Common/TextOf.h"

#include <QStringList>

namespace stillgate
{

namespace
{

QString daysOf(const BlockSchedule& schedule)
{
    QStringList days;
    for (const auto& day : schedule.days.value_or(std::vector<std::string>{}))
        days << QString::fromStdString(day);
    return days.join(", ");
}

QString timesOf(const BlockSchedule& schedule, const char* fromTo)
{
    QStringList times;
    for (const auto& time : {schedule.startTime, schedule.endTime}) {
        if (time)
            times << QString::fromStdString(*time);
    }
    return times.join(fromTo);
}

/// Times that aren't any are told as they were typed.
QString subtitleOf(const BlockSchedule& schedule, const char* fromTo)
{
    if (schedule.scheduleType == "always")
        return "24/7 — " + textOf("schedule.alwaysOn");
    QStringList parts{daysOf(schedule), timesOf(schedule, fromTo)};
    parts.removeAll("");
    return parts.join(" · ");
}

QString rulesTextOf(const BlockSchedule& schedule)
{
    const auto count = std::ssize(schedule.ruleIds);
    return count > 0 ? counted(count, "desktop.menuBar.activeRules") : QString{};
}

ScheduleRow rowOf(const BlockSchedule& schedule, const char* fromTo)
{
    return {
        .id = QString::fromStdString(schedule.id),
        .name = QString::fromStdString(schedule.name),
        .subtitle = subtitleOf(schedule, fromTo),
        .rulesText = rulesTextOf(schedule),
        .isEnabled = schedule.enabled,
        .statusText = textOf(schedule.enabled ? "common.active" : "common.disabled"),
    };
}

} // namespace

ScheduleRow scheduleRow(const BlockSchedule& schedule)
{
    return rowOf(schedule, " - ");
}

ScheduleRow scheduleDetailRow(const BlockSchedule& schedule)
{
    return rowOf(schedule, " → ");
}

} // namespace stillgate
