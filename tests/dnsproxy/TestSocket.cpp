#include "tests/dnsproxy/TestSocket.h"

#include <arpa/inet.h>
#include <poll.h>
#include <stdexcept>

namespace stillgate::test
{

namespace
{

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

FileDescriptor checked(int descriptor)
{
    if (descriptor < 0)
        throw std::runtime_error{"no socket"};
    return FileDescriptor{descriptor};
}

bool readWhole(int socket, std::span<std::uint8_t> target)
{
    while (!target.empty()) {
        const auto got = isReadable(socket) ? ::read(socket, target.data(), target.size()) : 0;
        if (got <= 0)
            return false;
        target = target.subspan(static_cast<std::size_t>(got));
    }
    return true;
}

} // namespace

FileDescriptor boundSocket(int type, std::uint16_t port)
{
    auto socket = checked(::socket(AF_INET, type | SOCK_CLOEXEC, 0));
    const auto address = loopback(port);
    if (::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        (type == SOCK_STREAM && ::listen(socket.number(), 64) != 0))
        throw std::runtime_error{"no port"};
    return socket;
}

FileDescriptor connectedSocket(int type, std::uint16_t port)
{
    auto socket = checked(::socket(AF_INET, type | SOCK_CLOEXEC, 0));
    const auto address = loopback(port);
    if (::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        throw std::runtime_error{"nobody listens"};
    return socket;
}

std::uint16_t portOf(int socket)
{
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

bool isReadable(int socket, std::chrono::milliseconds limit)
{
    pollfd wanted{socket, POLLIN, 0};
    return ::poll(&wanted, 1, static_cast<int>(limit.count())) == 1;
}

void sendBytes(int socket, View bytes)
{
    if (::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error{"can't send"};
}

std::optional<Bytes> datagramFrom(int socket, std::chrono::milliseconds limit)
{
    Bytes bytes(65'536);
    const auto got = isReadable(socket, limit) ? ::recv(socket, bytes.data(), bytes.size(), 0) : -1;
    if (got < 0)
        return std::nullopt;
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

std::optional<Bytes> streamMessageFrom(int socket)
{
    Bytes length(2);
    if (!readWhole(socket, length))
        return std::nullopt;
    Bytes message(dns::number16(length, 0));
    return readWhole(socket, message) ? std::optional{message} : std::nullopt;
}

Bytes streamMessage(View message)
{
    Bytes bytes;
    dns::append16(bytes, static_cast<std::uint16_t>(message.size()));
    dns::append(bytes, message);
    return bytes;
}

} // namespace stillgate::test
