#pragma once

#include "Blocking/HostsFileService.h"
#include "Platform/Scheduler.h"

namespace stillgate
{

/// Sees to it that the block stays in the hosts file as it was written, whoever changes it: it looks at the start, and
/// after every change of the file.
class HostsFileRepair
{
public:
    HostsFileRepair(HostsFileService& hostsFile, FileManager& files, Scheduler& scheduler, Log& log);

private:
    void lookSoon();
    void look();
    void checkAfter(std::chrono::milliseconds time);

    HostsFileService& m_hostsFile;
    Scheduler& m_scheduler;
    Log& m_log;
    std::unique_ptr<Timer> m_nextLook;
    std::unique_ptr<Timer> m_check;
    std::chrono::milliseconds m_wait{0}; ///< from a repair to the look whether it has helped
    std::unique_ptr<Observation> m_changes;
};

} // namespace stillgate
