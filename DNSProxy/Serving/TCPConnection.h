#pragma once

#include "Serving/QueryHandler.h"
#include "System/MessageStream.h"

namespace stillgate::dns
{

/// A conversation over TCP: query after query, the answers as they come, in whatever order (RFC 7766). Beyond some that
/// are unanswered, no more are read.
class TCPConnection final : public AnswerSink,
                            public std::enable_shared_from_this<TCPConnection>,
                            private MessageStream::Owner
{
public:
    /// `ended` is called when there is nothing more to do; it may not destroy the connection.
    TCPConnection(EventLoop& loop, FileDescriptor socket, const Endpoint& peer, QueryHandler& handler,
        std::function<void()> ended);

    void send(View answer, const Endpoint& receiver) override;

    void close();

    /// When the last message came, or else the connection.
    [[nodiscard]] std::chrono::steady_clock::time_point lastMessage() const { return m_lastMessage; }

private:
    void takeMessage(View message) override;
    void takeSent() override;
    void takeEnd(bool canSend) override;
    void readOrWait();

    Endpoint m_peer;
    QueryHandler& m_handler;
    std::function<void()> m_ended;
    std::chrono::steady_clock::time_point m_lastMessage = std::chrono::steady_clock::now();
    std::size_t m_unanswered = 0;
    bool m_isLastRead = false;
    bool m_isWaiting = false;
    MessageStream m_stream;
};

} // namespace stillgate::dns
