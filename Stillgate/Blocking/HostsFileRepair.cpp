#include "Blocking/HostsFileRepair.h"

#include "Platform/HostsBlock.h"

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

/// A program that changes the file does so in several steps, and somebody who changes it again and again must not keep
/// this one busy.
constexpr auto afterAChange = 200ms;
/// The disk may be full for a while.
constexpr auto afterARepair = 10s;

} // namespace

HostsFileRepair::HostsFileRepair(HostsFileService& hostsFile, FileManager& files, Scheduler& scheduler, Log& log)
    : m_hostsFile(hostsFile)
    , m_scheduler(scheduler)
    , m_log(log)
    , m_changes(files.onChange(hostsPath, [this] { lookSoon(); }))
{
    lookSoon();
}

/// The first of several changes decides when: they can't put the look off for ever.
void HostsFileRepair::lookSoon()
{
    if (!m_nextLook)
        m_nextLook = m_scheduler.once(afterAChange, [this] { look(); });
}

void HostsFileRepair::look()
{
    m_nextLook.reset();
    if (m_hostsFile.isIntact())
        return;
    m_log.write("[HostsFile] Somebody has changed the block; writing it again");
    m_hostsFile.repair();
    m_check = m_scheduler.once(afterARepair, [this] { look(); });
}

} // namespace stillgate
