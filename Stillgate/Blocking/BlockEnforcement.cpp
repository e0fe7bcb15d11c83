#include "Blocking/BlockEnforcement.h"

#include "Models/JSONCoding.h"

namespace stillgate
{

BlockEnforcement::BlockEnforcement(
    FileManager& files, HostsFileService& hostsFile, DNSProxy& dnsProxy, AppMonitor& monitor)
    : m_files(files)
    , m_hostsFile(hostsFile)
    , m_dnsProxy(dnsProxy)
    , m_monitor(monitor)
{}

void BlockEnforcement::enforce(CompiledBlocks blocks)
{
    const bool isPermanent = blocks.monitor.guardianFlexibilityMode == permanentMode;
    const auto permanence = isPermanent ? Permanence::permanent : Permanence::flexible;
    m_dnsProxy.setPermanence(permanence);
    m_hostsFile.setPermanence(permanence);
    writeConfig(blocks.dnsProxy);
    if (!blocks.hostsDomains.empty())
        m_hostsFile.applyBlocks(std::move(blocks.hostsDomains));
    m_monitor.setConfiguration(std::move(blocks.monitor));
    m_monitor.updateBudget(blocks.budget);
}

void BlockEnforcement::writeConfig(const BlockedConfig& config)
{
    const auto container = m_files.groupContainer();
    const auto text = JSONEncoder{DateForm::iso8601}.encode(config);
    if (!container || !text)
        return;
    (void)m_files.createDirectory(*container);
    (void)m_files.write(*container / "blocked-config.json", *text, {.access = WriteOptions::Access::ownerAndGroup});
}

} // namespace stillgate
