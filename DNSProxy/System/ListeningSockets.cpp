#include "System/ListeningSockets.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <optional>

namespace stillgate::dns
{

namespace
{

std::unexpected<Error> systemFailure(std::string action)
{
    return failure(SystemFailure{std::move(action), errno});
}

int numberIn(const char* variable)
{
    const auto* text = std::getenv(variable);
    return text == nullptr ? 0 : std::atoi(text);
}

int typeOf(int socket)
{
    int type = 0;
    socklen_t size = sizeof(type);
    return ::getsockopt(socket, SOL_SOCKET, SO_TYPE, &type, &size) == 0 ? type : 0;
}

Endpoint addressOf(int socket)
{
    Endpoint address;
    auto size = static_cast<socklen_t>(address.capacity());
    if (::getsockname(socket, address.data(), &size) == 0)
        address.resize(size);
    return address;
}

FileDescriptor boundSocket(const Endpoint& address, int type)
{
    FileDescriptor socket{::socket(address.data()->sa_family, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)};
    const int on = 1;
    // As the socket unit has it: what comes in a moment without a processor waits. Without the right to so much, it is
    // what the machine allows.
    const int buffer = 4 * 1024 * 1024;
    if (::setsockopt(socket.number(), SOL_SOCKET, SO_RCVBUFFORCE, &buffer, sizeof(buffer)) != 0)
        ::setsockopt(socket.number(), SOL_SOCKET, SO_RCVBUF, &buffer, sizeof(buffer));
    // Not for datagrams: there it would let another program share the port.
    if (type == SOCK_STREAM)
        ::setsockopt(socket.number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
    const bool isBound = socket.isOpen() &&
        ::bind(socket.number(), address.data(), static_cast<socklen_t>(address.size())) == 0 &&
        (type == SOCK_DGRAM || ::listen(socket.number(), SOMAXCONN) == 0);
    return isBound ? std::move(socket) : FileDescriptor{-1};
}

/// False if the port is taken, of the one kind or the other.
bool openPair(const Endpoint& address, ListeningSockets& sockets)
{
    auto datagram = boundSocket(address, SOCK_DGRAM);
    if (!datagram.isOpen())
        return false;
    const auto bound = addressOf(datagram.number());
    auto stream = boundSocket(bound, SOCK_STREAM);
    if (!stream.isOpen())
        return false;
    sockets.datagram.push_back(std::move(datagram));
    sockets.stream.push_back(std::move(stream));
    sockets.addresses.push_back(bound);
    return true;
}

} // namespace

Result<ListeningSockets> socketsOfServiceManager()
{
    constexpr int first = 3; // SD_LISTEN_FDS_START
    ListeningSockets sockets;
    if (numberIn("LISTEN_PID") != ::getpid())
        return sockets;
    for (int number = first; number < first + numberIn("LISTEN_FDS"); ++number) {
        const auto type = typeOf(number);
        if (type != SOCK_DGRAM && type != SOCK_STREAM)
            return systemFailure("use the inherited descriptor " + std::to_string(number));
        ::fcntl(number, F_SETFD, FD_CLOEXEC);
        ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) | O_NONBLOCK);
        if (type == SOCK_DGRAM)
            sockets.addresses.push_back(addressOf(number));
        (type == SOCK_DGRAM ? sockets.datagram : sockets.stream).emplace_back(number);
    }
    return sockets;
}

Result<ListeningSockets> openSockets(const std::vector<Endpoint>& addresses)
{
    constexpr int mostTries = 16; // a free port for datagrams may be taken for streams
    ListeningSockets sockets;
    for (const auto& address : addresses) {
        bool isOpen = false;
        for (int tries = address.port() == 0 ? mostTries : 1; tries > 0 && !isOpen; --tries)
            isOpen = openPair(address, sockets);
        if (!isOpen)
            return systemFailure("listen on " + address.address().to_string() + ":" + std::to_string(address.port()));
    }
    return sockets;
}

} // namespace stillgate::dns
