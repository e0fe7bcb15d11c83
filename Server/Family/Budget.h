#pragma once

#include "Database/Database.h"
#include "Models/ScreenTime.h"

#include <string>

namespace stillgate::server
{

/// What a user may use, has earned and has used on the day that it is now in their time zone.
[[nodiscard]] ScreenTimeBudget budgetOf(
    Database& database, const std::string& userId, const std::string& timeZone, Date now);

/// Minutes: the day's largest usage report of each device, added up.
[[nodiscard]] std::int64_t usedMinutesOn(Database& database, const std::string& userId, const std::string& day);

} // namespace stillgate::server
