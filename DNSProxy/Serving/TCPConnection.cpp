#include "Serving/TCPConnection.h"

#include <utility>

namespace stillgate::dns
{

namespace
{

constexpr std::chrono::seconds longestStep{10};
constexpr std::size_t mostUnanswered = 4;  // only those that are forwarded wait: an upstream has a connection for each
constexpr std::size_t mostUnsent = 65'536; // bytes

} // namespace

TCPConnection::TCPConnection(
    EventLoop& loop, FileDescriptor socket, const Endpoint& peer, QueryHandler& handler, std::function<void()> ended)
    : m_peer(peer)
    , m_handler(handler)
    , m_ended(std::move(ended))
    , m_stream(loop, std::move(socket), *this, longestStep)
{}

void TCPConnection::send(View answer, const Endpoint&)
{
    --m_unanswered;
    m_stream.send(answer);
    readOrWait();
}

void TCPConnection::takeMessage(View message)
{
    m_lastMessage = std::chrono::steady_clock::now();
    ++m_unanswered;
    if (m_handler.take(message, {.sink = shared_from_this(), .address = m_peer, .isStream = true}))
        readOrWait();
    else
        close();
}

void TCPConnection::takeSent()
{
    if (m_isLastRead && m_unanswered == 0)
        close();
    else
        readOrWait();
}

/// Who has asked its last still gets what it has asked for.
void TCPConnection::takeEnd(bool canSend)
{
    m_isLastRead = true;
    if (!canSend || (m_unanswered == 0 && m_stream.unsent() == 0))
        close();
}

void TCPConnection::readOrWait()
{
    const bool isFull = m_unanswered >= mostUnanswered || m_stream.unsent() > mostUnsent;
    if (std::exchange(m_isWaiting, isFull) != isFull)
        m_stream.setReading(!isFull);
}

void TCPConnection::close()
{
    m_stream.close();
    m_ended();
}

} // namespace stillgate::dns
