#include "API/Limits.h"
#include "API/Route.h"
#include "API/Stored.h"
#include "Accounts/Secrets.h"

#include <QUuid>

namespace stillgate::server
{

std::vector<BlockSchedule> schedulesOf(Database& database, const std::string& userId)
{
    return database.all<BlockSchedule>("SELECT * FROM schedules WHERE user_id = ? ORDER BY created_at, id", userId);
}

std::string idFor(Database& database, const std::string& table, const std::string& wanted)
{
    const bool isUUID = !QUuid::fromString(QString::fromStdString(wanted)).isNull() && wanted.size() == 36;
    const bool isFree = isUUID && database.number("SELECT COUNT(*) FROM " + table + " WHERE id = ?", wanted) == 0;
    return isFree ? wanted : newId();
}

namespace
{

Response list(Call& call)
{
    return jsonAnswer(schedulesOf(call.database, call.account.userId));
}

Response create(Call& call)
{
    auto schedule = call.body<BlockSchedule>();
    for (const auto& text : {std::optional{schedule.name}, std::optional{schedule.scheduleType}, schedule.startTime,
             schedule.endTime, schedule.startDate, schedule.endDate, std::optional{schedule.timezone}})
        requireText(text, longestName, "BlockSchedule");
    requireTexts(schedule.ruleIds, mostRows, "ruleIds");
    requireTexts(schedule.days.value_or(std::vector<std::string>{}), 7, "days");
    requireRoom(call.database, "schedules", "user_id", call.account.userId);
    schedule.id = idFor(call.database, "schedules", schedule.id);
    call.database.execute(
        "INSERT INTO schedules (id, user_id, name, schedule_type, days, start_time, end_time, start_date, end_date, "
        "timezone, rule_ids, enabled, created_at, updated_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        schedule.id, call.account.userId, schedule.name, schedule.scheduleType, schedule.days, schedule.startTime,
        schedule.endTime, schedule.startDate, schedule.endDate, schedule.timezone, schedule.ruleIds, schedule.enabled,
        call.now, call.now);
    return jsonAnswer(
        call.database.first<BlockSchedule>("SELECT * FROM schedules WHERE id = ?", schedule.id).value(), 201);
}

Response remove(Call& call)
{
    const auto removed = call.database.execute(
        "DELETE FROM schedules WHERE id = ? AND user_id = ?", call.argument("id"), call.account.userId);
    if (removed == 0)
        throw notFound();
    return acknowledgement();
}

} // namespace

Routes scheduleRoutes()
{
    return {
        {"GET", "/schedules", list},
        {"POST", "/schedules", create},
        {"DELETE", "/schedules/{id}", remove},
    };
}

} // namespace stillgate::server
