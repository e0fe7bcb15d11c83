#include "Serving/Proxy.h"

#include <malloc.h>
#include <sys/epoll.h>

namespace stillgate::dns
{

Proxy::Proxy(const CommandLine& line, ListeningSockets sockets, Log& log)
    : m_log(log)
    , m_handler(m_status, [this](const auto& query, auto key, const auto& asker) { forward(query, key, asker); })
    , m_loop([this] { flush(); })
    , m_udpForwarder(m_loop, m_upstreams, m_handler)
    , m_tcpForwarder(m_loop, m_upstreams, m_handler)
    , m_systemUpstreams(m_loop, {.resolvConf = line.resolvConf}, sockets.addresses,
          [this](auto upstreams) { takeUpstreams(std::move(upstreams)); })
    , m_hasFixedUpstreams(!line.upstreams.empty())
    , m_blockedSets(line.group, line.state, log)
{
    for (auto& socket : sockets.datagram)
        m_udpListeners.push_back(std::make_shared<UDPListener>(std::move(socket), m_handler));
    for (auto& socket : sockets.stream)
        m_tcpListeners.emplace_back(m_loop, std::move(socket), m_handler);
    if (m_hasFixedUpstreams)
        takeUpstreams(line.upstreams);
}

void Proxy::run()
{
    if (!m_hasFixedUpstreams)
        m_systemUpstreams.start();
    m_blockedSets.start([this](BlockedNames names) {
        m_loop.post(
            [this, taken = std::make_shared<BlockedNames>(std::move(names))] { takeBlocked(std::move(*taken)); });
    });
    m_loop.run();
}

void Proxy::takeBlocked(BlockedNames names)
{
    m_status.faults = std::move(names.faults);
    m_status.reloads = names.reloads;
    if (names.isLoadOver)
        ::malloc_trim(0); // of the other thread's heap too: it has just come to rest
    if (!names.set)
        return;
    m_handler.setBlocked(std::move(names.set));
    m_log.write("[DNSProxy] " + std::to_string(m_status.names) + " names are blocked");
    if (!std::exchange(m_isAnswering, true))
        startAnswering();
}

void Proxy::takeUpstreams(std::vector<Endpoint> upstreams)
{
    m_status.hasUpstream = !upstreams.empty();
    m_log.write("[DNSProxy] Upstreams: " + std::to_string(upstreams.size()));
    m_upstreams.replace(std::move(upstreams));
    m_udpForwarder.renewSockets();
    m_handler.forgetAnswers();
}

void Proxy::forward(const Query& query, std::uint64_t key, const Asker& asker)
{
    if (asker.isStream)
        m_tcpForwarder.forward(query, asker);
    else
        m_udpForwarder.forward(query, key, asker);
}

void Proxy::startAnswering()
{
    for (const auto& listener : m_udpListeners)
        static_cast<void>(m_loop.watch(listener->descriptor(), EPOLLIN, [listener](auto) { listener->receive(); }));
    for (auto& listener : m_tcpListeners)
        listener.start();
}

void Proxy::flush()
{
    m_udpForwarder.flush();
    for (const auto& listener : m_udpListeners)
        listener->flush();
}

} // namespace stillgate::dns
