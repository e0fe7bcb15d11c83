#pragma once

#include "System/Datagrams.h"
#include "System/EventLoop.h"
#include "System/FolderWatch.h"

#include <functional>
#include <optional>
#include <string_view>

namespace stillgate::dns
{

/// The name servers of a resolv.conf(5), in their order, on port 53.
[[nodiscard]] std::vector<Endpoint> nameServersOf(std::string_view resolvConf);

/// Where this machine says which resolvers it uses.
struct ResolverFiles
{
    std::filesystem::path resolvConf = "/etc/resolv.conf";
    /// What a resolver of this machine itself uses, where resolvConf names only that.
    std::vector<std::filesystem::path> behindStub{
        "/run/systemd/resolve/resolv.conf", "/run/NetworkManager/no-stub-resolv.conf"};
};

/// The machine's resolvers, now. Those of another machine come from the first file that names one; only where none
/// does, a resolver of this machine does as well, unless it is this program, which listens on `own`.
[[nodiscard]] std::vector<Endpoint> findUpstreams(const ResolverFiles& files, const std::vector<Endpoint>& own);

/// Follows the machine from network to network.
class SystemUpstreams
{
public:
    using Changed = std::function<void(std::vector<Endpoint>)>;

    /// `changed` is called at the start and after every change.
    SystemUpstreams(EventLoop& loop, ResolverFiles files, std::vector<Endpoint> own, Changed changed);

    void start();

private:
    void look();

    EventLoop& m_loop;
    ResolverFiles m_files;
    std::vector<Endpoint> m_own;
    Changed m_changed;
    std::optional<std::vector<Endpoint>> m_found;
    FolderWatch m_watch;
};

} // namespace stillgate::dns
