#pragma once

#include "App/SessionData.h"
#include "Platform/FileManager.h"
#include "Platform/Log.h"

namespace stillgate
{

/// What a session needs to go on without the backend, as it stands in the cache file. Dates are seconds since 2001.
struct CachedState
{
    Streak streak;
    std::vector<BlockRule> blockRules;
    std::vector<SGDevice> devices;
    std::vector<BlockSchedule> schedules;
    std::vector<SGTask> tasks;
    std::optional<ScreenTimeBudget> budget;
    std::vector<SharingConnection> connections;
    std::optional<std::string> userName; ///< written for whoever looks into the file; not read back

    // Without these two, a restart without network would drop a guardian's strict mode and rules. Files of older
    // versions lack them.
    std::optional<std::vector<SharingConnection>> sharingConnections;
    std::optional<std::vector<GuardianBlockRule>> guardianRulesForMe;

    STILLGATE_RECORD(CachedState, streak, blockRules, devices, schedules, tasks, budget, connections, userName,
        sharingConnections, guardianRulesForMe);
};

/// The file state.dat in `com.stillgate.macos/cache` below the user's application data.
class StateCache
{
public:
    StateCache(FileManager& files, Log& log);

    /// A failure is logged, and the old file stays.
    void save(const SessionData& session);

    /// False if there is no file that can be read. A file that doesn't decode is logged, restores nothing, and gives
    /// true.
    [[nodiscard]] bool load(SessionData& session) const;

    void clear();

private:
    FileManager& m_files;
    Log& m_log;
    std::filesystem::path m_file;
};

} // namespace stillgate
