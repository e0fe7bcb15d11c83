#include "Blocking/BlockEnforcement.h"

namespace stillgate
{

BlockEnforcement::BlockEnforcement(
    FileManager& files, HostsFileService& hostsFile, DNSProxy& dnsProxy, AppMonitor& monitor)
    : m_config(files)
    , m_hostsFile(hostsFile)
    , m_dnsProxy(dnsProxy)
    , m_monitor(monitor)
{}

void BlockEnforcement::enforce(CompiledBlocks blocks, HostsFileService::Rewrite rewrite)
{
    const bool isPermanent = blocks.monitor.guardianFlexibilityMode == permanentMode;
    const auto permanence = isPermanent ? Permanence::permanent : Permanence::flexible;
    m_dnsProxy.setPermanence(permanence);
    m_hostsFile.setPermanence(permanence);
    m_config.keep(blocks.dnsProxy);
    if (!blocks.hostsDomains.empty() || rewrite == HostsFileService::Rewrite::always)
        m_hostsFile.applyBlocks(std::move(blocks.hostsDomains), rewrite);
    m_monitor.setConfiguration(std::move(blocks.monitor));
    m_monitor.updateBudget(blocks.budget);
}

void BlockEnforcement::end()
{
    m_config.leave();
    m_monitor.stopMonitoring();
    m_hostsFile.removeBlocks();
}

} // namespace stillgate
