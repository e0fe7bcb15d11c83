#include "Upstream/UpstreamSockets.h"

#include <algorithm>
#include <sys/epoll.h>

namespace stillgate::dns
{

namespace
{

/// A machine that has changed its network keeps no socket with the old address longer than this.
constexpr std::chrono::seconds longestLife{10};
constexpr std::size_t mostQueries = 512;

/// So many IDs stay free that a number is found at once.
constexpr std::size_t mostUnderWay = 4096;

FileDescriptor connectedSocket(const Endpoint& upstream)
{
    FileDescriptor socket{::socket(upstream.data()->sa_family, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)};
    if (socket.isOpen() && ::connect(socket.number(), upstream.data(), static_cast<socklen_t>(upstream.size())) != 0)
        return FileDescriptor{-1};
    return socket;
}

} // namespace

UpstreamSocket::~UpstreamSocket()
{
    if (m_loop != nullptr)
        m_loop->forget(m_number);
}

bool UpstreamSocket::isWorn(SteadyTime now) const
{
    return m_used >= mostQueries || now - m_opened > longestLife;
}

void UpstreamSocket::watch(EventLoop& loop, EventLoop::Ready receive)
{
    m_loop = &loop;
    m_number = loop.watch(m_file.number(), EPOLLIN, std::move(receive));
}

std::optional<std::uint16_t> UpstreamSocket::addQuery(std::list<Flight>::iterator flight, RandomNumbers& random)
{
    if (m_flights.size() >= mostUnderWay)
        return std::nullopt;
    ++m_used;
    for (;;) {
        const auto id = random.next();
        if (m_flights.try_emplace(id, flight).second)
            return id;
    }
}

std::optional<std::list<Flight>::iterator> UpstreamSocket::queryOf(std::uint16_t id) const
{
    const auto found = m_flights.find(id);
    return found == m_flights.end() ? std::nullopt : std::optional{found->second};
}

std::vector<std::list<Flight>::iterator> UpstreamSocket::queries() const
{
    std::vector<std::list<Flight>::iterator> queries;
    for (const auto& [id, flight] : m_flights)
        queries.push_back(flight);
    return queries;
}

std::shared_ptr<UpstreamSocket> UpstreamSockets::any(const Endpoint& upstream, SteadyTime now, RandomNumbers& random)
{
    auto pool = std::ranges::find(m_pools, upstream, &std::pair<Endpoint, Pool>::first);
    if (pool == m_pools.end())
        pool = m_pools.insert(pool, {upstream, {}});
    auto& socket = pool->second[random.next() % poolSize];
    if (!socket || socket->isWorn(now)) {
        socket.reset();
        auto file = connectedSocket(upstream);
        if (!file.isOpen())
            return nullptr;
        socket = std::make_shared<UpstreamSocket>(std::move(file), upstream, now);
        m_watch(socket);
    }
    return socket;
}

void UpstreamSockets::renew(const Endpoint& upstream)
{
    std::erase_if(m_pools, [&](const auto& pool) { return pool.first == upstream; });
}

} // namespace stillgate::dns
