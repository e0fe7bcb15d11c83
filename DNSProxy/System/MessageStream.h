#pragma once

#include "Message/Bytes.h"
#include "System/EventLoop.h"

namespace stillgate::dns
{

/// DNS messages over a TCP connection, each with its length ahead (RFC 1035, 4.2.2).
///
/// THREAT: a peer can say nothing, or a byte a second, or never read. There is a time limit for every message to come
/// whole, and to go.
class MessageStream
{
public:
    class Owner
    {
    public:
        virtual ~Owner() = default;

        virtual void takeMessage(View message) = 0;

        /// The peer has taken all that was sent.
        virtual void takeSent() {}

        /// The peer sends no more; with `canSend` it may still read. Otherwise the stream is over: it failed, or a time
        /// limit has passed. The stream may be closed in here, not destroyed.
        virtual void takeEnd(bool canSend) = 0;
    };

    /// `socket` is connected, or about to be. `limit` is the time for each message.
    MessageStream(EventLoop& loop, FileDescriptor socket, Owner& owner, std::chrono::steady_clock::duration limit);
    ~MessageStream();

    MessageStream(MessageStream&&) = delete;

    /// What is larger than its length can tell is the end of the stream.
    void send(View message);

    /// Reads on, or lets what comes wait.
    void setReading(bool isReading);

    [[nodiscard]] bool isOpen() const { return m_socket.isOpen(); }

    /// The bytes that the peer hasn't taken yet.
    [[nodiscard]] std::size_t unsent() const { return m_out.size(); }

    void close();

private:
    void serve(std::uint32_t events);
    void read();
    void deliver();
    void write();
    void end(bool canSend);
    void updateEvents();

    EventLoop& m_loop;
    FileDescriptor m_socket;
    Owner& m_owner;
    std::chrono::steady_clock::duration m_limit;
    Timer m_timer;
    std::uint64_t m_number;
    std::uint32_t m_events;
    Bytes m_in;
    Bytes m_out;
    bool m_isReading = true;
    bool m_hasEnded = false;
};

} // namespace stillgate::dns
