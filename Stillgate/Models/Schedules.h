#pragma once

#include "Models/Date.h"
#include "Models/Record.h"

#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// When a set of rules is in force. The server evaluates it; here it only names the session on the block screen.
struct BlockSchedule
{
    std::string id;
    std::optional<std::string> userId;
    std::string name;
    std::string scheduleType;                     ///< "always", "recurring"
    std::optional<std::vector<std::string>> days; ///< "mon" to "sun"
    std::optional<std::string> startTime;         ///< "09:00"
    std::optional<std::string> endTime;           ///< "17:00"
    std::optional<std::string> startDate;
    std::optional<std::string> endDate;
    std::string timezone; ///< identifier of the tz database, of the creating device
    std::vector<std::string> ruleIds;
    bool enabled = false;
    std::optional<Date> createdAt;
    std::optional<Date> updatedAt;

    STILLGATE_RECORD(BlockSchedule, id, userId, name, scheduleType, days, startTime, endTime, startDate, endDate,
        timezone, ruleIds, enabled, createdAt, updatedAt);
};

} // namespace stillgate
