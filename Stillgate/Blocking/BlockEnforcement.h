#pragma once

#include "Blocking/AppMonitor.h"
#include "Blocking/BlockCompiler.h"
#include "Blocking/DNSProxy.h"
#include "Blocking/HostsFileService.h"
#include "Platform/FileManager.h"

namespace stillgate
{

/// Hands compiled blocks to what enforces them.
class BlockEnforcement
{
public:
    BlockEnforcement(FileManager& files, HostsFileService& hostsFile, DNSProxy& dnsProxy, AppMonitor& monitor);

    /// A file that can't be written is no reason to hold back the rest. With no domains, the hosts file is left as it
    /// is: an earlier block stays until sign-out.
    void enforce(CompiledBlocks blocks);

private:
    void writeConfig(const BlockedConfig& config);

    FileManager& m_files;
    HostsFileService& m_hostsFile;
    DNSProxy& m_dnsProxy;
    AppMonitor& m_monitor;
};

} // namespace stillgate
