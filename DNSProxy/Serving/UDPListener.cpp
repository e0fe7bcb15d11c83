#include "Serving/UDPListener.h"

namespace stillgate::dns
{

namespace
{

constexpr std::size_t queriesAtOnce = 64;
constexpr std::size_t largestQuery = 4096; // bytes; everyday ones have less than 100, padded ones 128 (RFC 8467, 4.1)

} // namespace

UDPListener::UDPListener(FileDescriptor socket, QueryHandler& handler)
    : m_socket(std::move(socket))
    , m_handler(handler)
    , m_queries(queriesAtOnce, largestQuery)
{}

void UDPListener::receive()
{
    Asker asker{.sink = shared_from_this(), .address = {}};
    const auto count = m_queries.receive(m_socket.number());
    for (std::size_t index = 0; index < count; ++index) {
        asker.address = m_queries.sender(index);
        m_handler.take(m_queries[index], asker);
    }
}

void UDPListener::flush()
{
    // Whoever isn't there any more needs no answer.
    if (m_answers.size() > 0)
        static_cast<void>(m_answers.send(m_socket.number()));
}

} // namespace stillgate::dns
