#include "Blocking/HostsFileRepair.h"

#include "Platform/HostsBlock.h"

#include <algorithm>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

/// A program that changes the file does so in several steps, and somebody who changes it again and again must not keep
/// this one busy.
constexpr auto afterAChange = 200ms;
constexpr auto duringAWrite = 1s;
/// The disk may be full for a while, or a person has to agree first, and may not want to be asked again and again.
constexpr std::chrono::milliseconds shortestWait = 10s;
constexpr std::chrono::milliseconds longestWait = 5min;

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
    if (m_hostsFile.isWriting()) {
        checkAfter(duringAWrite);
        return;
    }
    if (m_hostsFile.isIntact())
        return;
    m_log.write("[HostsFile] The block isn't as it should be; writing it again");
    const bool hasLastOneWorked = m_hostsFile.isActive;
    m_wait = hasLastOneWorked ? shortestWait : std::clamp(2 * m_wait, shortestWait, longestWait);
    m_hostsFile.repair();
    checkAfter(m_wait);
}

/// Whether what is being written has helped.
void HostsFileRepair::checkAfter(std::chrono::milliseconds time)
{
    m_check = m_scheduler.once(time, [this] { look(); });
}

} // namespace stillgate
