#pragma once

#include "Serving/TCPConnection.h"

#include <set>

namespace stillgate::dns
{

/// Takes the connections that come to one listening socket.
class TCPListener
{
public:
    /// THREAT: one user may open so many. A further one takes the place of the one that has been idle longest.
    static constexpr std::size_t mostConnections = 256;

    TCPListener(EventLoop& loop, FileDescriptor socket, QueryHandler& handler);

    void start();

private:
    void accept();
    void closeMostIdle();
    void add(FileDescriptor socket, const Endpoint& peer);

    EventLoop& m_loop;
    FileDescriptor m_socket;
    QueryHandler& m_handler;
    Timer m_pause;
    std::uint64_t m_number = 0;
    std::set<std::shared_ptr<TCPConnection>> m_connections;
};

} // namespace stillgate::dns
