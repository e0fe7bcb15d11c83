#include "Upstream/SystemUpstreams.h"

#include "Platform/Text.h"

#include <algorithm>
#include <array>
#include <boost/asio/ip/address.hpp>
#include <fcntl.h>
#include <sys/epoll.h>

namespace stillgate::dns
{

namespace asio = boost::asio;
namespace fs = std::filesystem;

namespace
{

constexpr std::uint16_t dnsPort = 53;

/// Of a file that is replaced whole, and short; nothing if it isn't there.
std::string textOf(const fs::path& path)
{
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    std::array<char, 16 * 1024> text{};
    const auto size = file.isOpen() ? ::read(file.number(), text.data(), text.size()) : 0;
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

bool isUsable(const Endpoint& endpoint)
{
    return !endpoint.address().is_unspecified() && !endpoint.address().is_multicast();
}

bool isOfOtherMachine(const Endpoint& endpoint)
{
    return isUsable(endpoint) && !endpoint.address().is_loopback();
}

} // namespace

std::vector<Endpoint> nameServersOf(std::string_view resolvConf)
{
    constexpr std::string_view keyword = "nameserver";
    std::vector<Endpoint> servers;
    while (!resolvConf.empty()) {
        const auto lineEnd = std::min(resolvConf.find('\n'), resolvConf.size());
        const auto line = trimmed(resolvConf.substr(0, lineEnd));
        resolvConf.remove_prefix(std::min(lineEnd + 1, resolvConf.size()));
        if (!line.starts_with(keyword) || !whiteSpace.contains(line.substr(keyword.size(), 1)))
            continue;
        const auto value = trimmed(line.substr(keyword.size()));
        boost::system::error_code error;
        const auto address =
            asio::ip::make_address(std::string{value.substr(0, value.find_first_of(whiteSpace))}, error);
        if (!error && std::ranges::find(servers, Endpoint{address, dnsPort}) == servers.end())
            servers.emplace_back(address, dnsPort);
    }
    return servers;
}

std::vector<Endpoint> findUpstreams(const ResolverFiles& files, const std::vector<Endpoint>& own)
{
    std::vector<Endpoint> ofThisMachine;
    std::vector<fs::path> paths{files.resolvConf};
    paths.insert(paths.end(), files.behindStub.begin(), files.behindStub.end());
    for (const auto& path : paths) {
        auto servers = nameServersOf(textOf(path));
        std::erase_if(servers,
            [&](const auto& server) { return !isUsable(server) || std::ranges::find(own, server) != own.end(); });
        if (ofThisMachine.empty())
            ofThisMachine = servers;
        std::erase_if(servers, [](const auto& server) { return !isOfOtherMachine(server); });
        if (!servers.empty())
            return servers;
    }
    return ofThisMachine;
}

SystemUpstreams::SystemUpstreams(EventLoop& loop, ResolverFiles files, std::vector<Endpoint> own, Changed changed)
    : m_loop(loop)
    , m_files(std::move(files))
    , m_own(std::move(own))
    , m_changed(std::move(changed))
{}

void SystemUpstreams::start()
{
    static_cast<void>(m_loop.watch(m_watch.descriptor(), EPOLLIN, [this](std::uint32_t) { look(); }));
    look();
}

void SystemUpstreams::look()
{
    m_watch.drain();
    auto paths = m_files.behindStub;
    paths.push_back(m_files.resolvConf);
    // Mostly a link: it can lead elsewhere from now on, and what it leads to can be replaced.
    std::error_code ignored;
    paths.push_back(m_files.resolvConf.parent_path() / fs::read_symlink(m_files.resolvConf, ignored));
    for (const auto& path : paths)
        m_watch.watch(path.parent_path());
    auto found = findUpstreams(m_files, m_own);
    if (m_found == found)
        return;
    m_found = found;
    m_changed(std::move(found));
}

} // namespace stillgate::dns
