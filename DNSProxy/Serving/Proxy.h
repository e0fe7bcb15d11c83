#pragma once

#include "Names/BlockedSets.h"
#include "Serving/CommandLine.h"
#include "Serving/TCPListener.h"
#include "Serving/UDPListener.h"
#include "System/ListeningSockets.h"
#include "Upstream/SystemUpstreams.h"
#include "Upstream/TCPForwarder.h"
#include "Upstream/UDPForwarder.h"

namespace stillgate::dns
{

/// The whole program: one of each, and what they tell each other. One thread answers, another one reads files.
class Proxy
{
public:
    Proxy(const CommandLine& line, ListeningSockets sockets, Log& log);

    /// Answers until a SIGTERM or SIGINT, which the calling thread must have blocked. The first query waits until it is
    /// known what is blocked.
    void run();

private:
    void takeBlocked(BlockedNames names);
    void takeUpstreams(std::vector<Endpoint> upstreams);
    void forward(const Query& query, std::uint64_t key, const Asker& asker);
    void startAnswering();
    void flush();

    Log& m_log;
    Status m_status;
    Upstreams m_upstreams;
    QueryHandler m_handler;
    EventLoop m_loop;
    UDPForwarder m_udpForwarder;
    TCPForwarder m_tcpForwarder;
    std::vector<std::shared_ptr<UDPListener>> m_udpListeners;
    std::list<TCPListener> m_tcpListeners;
    SystemUpstreams m_systemUpstreams;
    bool m_hasFixedUpstreams;
    bool m_isAnswering = false;
    BlockedSets m_blockedSets; ///< ends first: its thread posts into the loop
};

} // namespace stillgate::dns
