#include "Serving/TCPListener.h"

#include <algorithm>
#include <cerrno>
#include <netinet/tcp.h>
#include <sys/epoll.h>

namespace stillgate::dns
{

TCPListener::TCPListener(EventLoop& loop, FileDescriptor socket, QueryHandler& handler)
    : m_loop(loop)
    , m_socket(std::move(socket))
    , m_handler(handler)
    , m_pause(loop, [this] { m_loop.change(m_number, EPOLLIN); })
{}

void TCPListener::start()
{
    m_number = m_loop.watch(m_socket.number(), EPOLLIN, [this](std::uint32_t) { accept(); });
}

void TCPListener::accept()
{
    Endpoint peer;
    auto size = static_cast<socklen_t>(peer.capacity());
    FileDescriptor socket{::accept4(m_socket.number(), peer.data(), &size, SOCK_NONBLOCK | SOCK_CLOEXEC)};
    if (socket.isOpen()) {
        peer.resize(size);
        if (m_connections.size() >= mostConnections)
            closeMostIdle();
        add(std::move(socket), peer);
        return;
    }
    // Somebody has to close one first; until then the next one would be told of without end.
    if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
        m_loop.change(m_number, 0);
        m_pause.start(std::chrono::milliseconds{100});
    }
}

void TCPListener::closeMostIdle()
{
    const auto idle = m_connections.extract(
        std::ranges::min_element(m_connections, {}, [](const auto& connection) { return connection->lastMessage(); }));
    idle.value()->close();
}

void TCPListener::add(FileDescriptor socket, const Endpoint& peer)
{
    const int on = 1;
    ::setsockopt(socket.number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    // Later: it is the connection itself that says that it has ended.
    const auto place = std::make_shared<std::weak_ptr<TCPConnection>>();
    auto ended = [this, place] { m_loop.post([this, place] { m_connections.erase(place->lock()); }); };
    const auto connection =
        std::make_shared<TCPConnection>(m_loop, std::move(socket), peer, m_handler, std::move(ended));
    *place = connection;
    m_connections.insert(connection);
}

} // namespace stillgate::dns
