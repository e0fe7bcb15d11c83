#pragma once

#include "Blocking/AppMonitor.h"
#include "Blocking/BlockCompiler.h"
#include "Blocking/BlockedConfigFile.h"
#include "Blocking/DNSProxy.h"
#include "Blocking/HostsFileService.h"

namespace stillgate
{

/// Hands compiled blocks to what enforces them.
class BlockEnforcement
{
public:
    BlockEnforcement(FileManager& files, HostsFileService& hostsFile, DNSProxy& dnsProxy, AppMonitor& monitor);

    /// A file that can't be written is no reason to hold back the rest. With no domains, the hosts file is left as it
    /// is (an earlier block stays until sign-out), unless it is to be written always.
    void enforce(CompiledBlocks blocks, HostsFileService::Rewrite rewrite);

    /// Nothing is enforced any more but by the DNS proxy, whose end somebody may have to agree to.
    void end();

private:
    BlockedConfigFile m_config;
    HostsFileService& m_hostsFile;
    DNSProxy& m_dnsProxy;
    AppMonitor& m_monitor;
};

} // namespace stillgate
