#pragma once

#include "Message/Query.h"
#include "System/MessageStream.h"
#include "Upstream/Asker.h"
#include "Upstream/Upstreams.h"

#include <list>

namespace stillgate::dns
{

/// Sends queries on over TCP, each on a connection of its own: those whose askers came by TCP, mostly because the
/// answer is too large for a datagram.
class TCPForwarder
{
public:
    static constexpr std::size_t mostFlights = 256; ///< a further one fails at once

    TCPForwarder(EventLoop& loop, const Upstreams& upstreams, ForwardedQueries& queries);
    ~TCPForwarder();

    void forward(const Query& query, const Asker& asker);

private:
    class Flight;

    void remove(Flight& flight);

    EventLoop& m_loop;
    const Upstreams& m_upstreams;
    ForwardedQueries& m_queries;
    std::list<Flight> m_flights;
};

} // namespace stillgate::dns
