#pragma once

#include "Message/Bytes.h"

#include <boost/asio/ip/udp.hpp>
#include <memory>
#include <sys/socket.h>

namespace stillgate::dns
{

using Endpoint = boost::asio::ip::udp::endpoint;

/// Datagrams as they came: many by one call of the kernel, which costs more than all that is done with them.
class ReceivedDatagrams
{
public:
    /// Room for so many; what is larger is cut off.
    ReceivedDatagrams(std::size_t count, std::size_t largest);

    /// Takes what is there from a socket, without waiting, and gives the number. None is also an error (errno).
    [[nodiscard]] std::size_t receive(int socket);

    /// One of those of the last call, until the next one.
    [[nodiscard]] std::span<std::uint8_t> operator[](std::size_t index);

    [[nodiscard]] const Endpoint& sender(std::size_t index) const { return m_senders[index]; }

private:
    std::size_t m_largest;
    std::unique_ptr<std::uint8_t[]> m_bytes; ///< pages that no datagram has reached take no memory
    std::vector<Endpoint> m_senders;
    std::vector<iovec> m_places;
    std::vector<mmsghdr> m_headers;
    std::size_t m_filled = 0; ///< by the last call
};

/// Datagrams to send, all by as few calls as possible.
class DatagramBatch
{
public:
    /// To the peer of a connected socket.
    void add(View bytes) { add(bytes, Endpoint{}); }

    void add(View bytes, const Endpoint& receiver);

    [[nodiscard]] std::size_t size() const { return m_datagrams.size(); }

    struct Unsent
    {
        std::size_t place; ///< in the order of add()
        int code;          ///< errno
    };

    /// Sends all and forgets them. Gives those that couldn't be sent.
    std::vector<Unsent> send(int socket);

private:
    struct Datagram
    {
        std::size_t begin;
        std::size_t size;
        Endpoint receiver;
    };

    void describe();

    Bytes m_bytes;
    std::vector<Datagram> m_datagrams;
    std::vector<iovec> m_places;
    std::vector<mmsghdr> m_headers;
};

} // namespace stillgate::dns
