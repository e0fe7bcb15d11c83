#pragma once

#include "Database/Database.h"
#include "Models/Account.h"

#include <string>
#include <vector>

namespace stillgate::server
{

/// A day as far as a streak is concerned. It counts if a device was heard of and nobody got round a block.
struct ActiveDay
{
    std::string day;
    bool hasHeartbeat = false;
    bool hasBypass = false;

    STILLGATE_RECORD(ActiveDay, day, hasHeartbeat, hasBypass);
};

/// The counters, from the days in their order. The running streak ends today, or yesterday while today hasn't counted
/// yet; a bypass today ends it.
[[nodiscard]] Streak streakOf(const std::vector<ActiveDay>& days, const std::string& today);

[[nodiscard]] Streak streakOf(Database& database, const std::string& userId, const std::string& today);

/// Adds to the day, which may not have a row yet. `focus` is the time under protection since the last heartbeat.
void recordHeartbeat(Database& database, const std::string& userId, const std::string& day, std::chrono::seconds focus);
void recordBypass(Database& database, const std::string& userId, const std::string& day);

} // namespace stillgate::server
