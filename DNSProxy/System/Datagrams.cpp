#include "System/Datagrams.h"

#include <algorithm>
#include <cerrno>

namespace stillgate::dns
{

ReceivedDatagrams::ReceivedDatagrams(std::size_t count, std::size_t largest)
    : m_largest(largest)
    , m_bytes(std::make_unique_for_overwrite<std::uint8_t[]>(count * largest))
    , m_senders(count)
    , m_places(count)
    , m_headers(count)
{
    for (std::size_t index = 0; index < count; ++index) {
        m_places[index] = {.iov_base = m_bytes.get() + index * largest, .iov_len = largest};
        auto& header = m_headers[index].msg_hdr;
        header = {};
        header.msg_name = m_senders[index].data();
        header.msg_namelen = static_cast<socklen_t>(m_senders[index].capacity());
        header.msg_iov = &m_places[index];
        header.msg_iovlen = 1;
    }
}

std::size_t ReceivedDatagrams::receive(int socket)
{
    // The kernel has put lengths there, of those that it has filled and of no others.
    for (std::size_t index = 0; index < m_filled; ++index)
        m_headers[index].msg_hdr.msg_namelen = static_cast<socklen_t>(m_senders[index].capacity());
    const auto count = static_cast<unsigned>(m_headers.size());
    const auto received = ::recvmmsg(socket, m_headers.data(), count, MSG_DONTWAIT, nullptr);
    m_filled = static_cast<std::size_t>(std::max(received, 0));
    return m_filled;
}

std::span<std::uint8_t> ReceivedDatagrams::operator[](std::size_t index)
{
    return {m_bytes.get() + index * m_largest, m_headers[index].msg_len};
}

void DatagramBatch::add(View bytes, const Endpoint& receiver)
{
    m_datagrams.push_back({.begin = m_bytes.size(), .size = bytes.size(), .receiver = receiver});
    append(m_bytes, bytes);
}

std::vector<DatagramBatch::Unsent> DatagramBatch::send(int socket)
{
    std::vector<Unsent> unsent;
    describe();
    for (std::size_t next = 0; next < m_headers.size();) {
        const auto left = static_cast<unsigned>(m_headers.size() - next);
        const auto sent = ::sendmmsg(socket, &m_headers[next], left, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            unsent.push_back({.place = next, .code = errno});
        next += static_cast<std::size_t>(std::max(sent, 1));
    }
    m_datagrams.clear();
    m_bytes.clear();
    return unsent;
}

/// Only now: while datagrams are added, the bytes move.
void DatagramBatch::describe()
{
    m_places.resize(m_datagrams.size());
    m_headers.assign(m_datagrams.size(), {});
    for (std::size_t index = 0; index < m_datagrams.size(); ++index) {
        auto& datagram = m_datagrams[index];
        m_places[index] = {.iov_base = m_bytes.data() + datagram.begin, .iov_len = datagram.size};
        auto& header = m_headers[index].msg_hdr;
        header.msg_iov = &m_places[index];
        header.msg_iovlen = 1;
        if (datagram.receiver.port() == 0)
            continue;
        header.msg_name = datagram.receiver.data();
        header.msg_namelen = static_cast<socklen_t>(datagram.receiver.size());
    }
}

} // namespace stillgate::dns
