#pragma once

#include "System/EventLoop.h"
#include "System/RandomNumbers.h"
#include "Upstream/Upstreams.h"

#include <array>
#include <list>
#include <memory>
#include <optional>

namespace stillgate::dns
{

struct Flight;

/// A socket connected to one upstream: the kernel drops what comes from elsewhere.
class UpstreamSocket
{
public:
    UpstreamSocket(FileDescriptor file, const Endpoint& upstream, SteadyTime now)
        : m_file(std::move(file))
        , m_upstream(upstream)
        , m_opened(now)
    {}

    ~UpstreamSocket();

    UpstreamSocket(UpstreamSocket&&) = delete;

    [[nodiscard]] int descriptor() const { return m_file.number(); }

    [[nodiscard]] const Endpoint& upstream() const { return m_upstream; }

    /// In use for so long or so often that somebody may have learnt its port.
    [[nodiscard]] bool isWorn(SteadyTime now) const;

    /// From now on `receive` is called when an answer comes.
    void watch(EventLoop& loop, EventLoop::Ready receive);

    /// A number for one more query, which nobody can foresee and none of those under way has. Nothing if too many have.
    [[nodiscard]] std::optional<std::uint16_t> addQuery(std::list<Flight>::iterator flight, RandomNumbers& random);

    void removeQuery(std::uint16_t id) { m_flights.erase(id); }

    [[nodiscard]] std::optional<std::list<Flight>::iterator> queryOf(std::uint16_t id) const;

    /// The queries that still wait for an answer here.
    [[nodiscard]] std::vector<std::list<Flight>::iterator> queries() const;

private:
    FileDescriptor m_file;
    Endpoint m_upstream;
    SteadyTime m_opened;
    std::size_t m_used = 0;
    std::unordered_map<std::uint16_t, std::list<Flight>::iterator> m_flights;
    EventLoop* m_loop = nullptr;
    std::uint64_t m_number = 0; ///< the loop's
};

/// Many sockets to every upstream, each with a port of the kernel's choice, of which any may be the next one's: whoever
/// wants to forge an answer has to guess port and ID (RFC 5452).
class UpstreamSockets
{
public:
    using Watch = std::function<void(const std::shared_ptr<UpstreamSocket>&)>;

    /// `watch` sees every new socket.
    explicit UpstreamSockets(Watch watch)
        : m_watch(std::move(watch))
    {}

    /// Null if there is no way to the upstream.
    [[nodiscard]] std::shared_ptr<UpstreamSocket> any(const Endpoint& upstream, SteadyTime now, RandomNumbers& random);

    /// Sockets that have queries under way last as long as these.
    void renew(const Endpoint& upstream);

    void renewAll() { m_pools.clear(); }

private:
    static constexpr std::size_t poolSize = 64;
    using Pool = std::array<std::shared_ptr<UpstreamSocket>, poolSize>;

    Watch m_watch;
    std::vector<std::pair<Endpoint, Pool>> m_pools;
};

} // namespace stillgate::dns
