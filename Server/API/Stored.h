#pragma once

#include "Accounts/SignIns.h"
#include "Database/Database.h"
#include "Models/Account.h"

#include <vector>

namespace stillgate::server
{

// What an account has, as the operations of its area and the export both give it.

/// The device that asks comes first: a client takes the first of its platform for its own.
[[nodiscard]] std::vector<SGDevice> devicesOf(Database& database, const Account& account);

[[nodiscard]] std::vector<BlockRule> blockRulesOf(Database& database, const std::string& userId);
[[nodiscard]] std::vector<BlockSchedule> schedulesOf(Database& database, const std::string& userId);

enum class TaskRole { assignee, assigner, either };

/// The newest first; those that repeat from the day on that they are for.
[[nodiscard]] std::vector<SGTask> tasksOf(Database& database, const std::string& userId, TaskRole role, Date now);

/// The id that a client gave, if it is a UUID that nobody has used in this table; else a new one.
[[nodiscard]] std::string idFor(Database& database, const std::string& table, const std::string& wanted);

} // namespace stillgate::server
