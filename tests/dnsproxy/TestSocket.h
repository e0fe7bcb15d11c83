#pragma once

#include "Platform/Linux/FileDescriptor.h"
#include "tests/dnsproxy/DNSPacket.h"

#include <chrono>
#include <sys/socket.h>

namespace stillgate::test
{

/// How long a test waits for what has to come, on a machine that is busy with other tests.
inline constexpr std::chrono::seconds longestWait{20};

/// A socket on 127.0.0.1, on a port of the kernel's choice if it is 0. Listens if it is one for streams. Throws
/// std::runtime_error if the port is taken.
[[nodiscard]] FileDescriptor boundSocket(int type, std::uint16_t port = 0);

/// One that is connected to a port of 127.0.0.1.
[[nodiscard]] FileDescriptor connectedSocket(int type, std::uint16_t port);

[[nodiscard]] std::uint16_t portOf(int socket);

/// Whether there is something to read within the time.
[[nodiscard]] bool isReadable(int socket, std::chrono::milliseconds limit = longestWait);

void sendBytes(int socket, View bytes);

/// The next datagram; nothing if none comes within the time.
[[nodiscard]] std::optional<Bytes> datagramFrom(int socket, std::chrono::milliseconds limit = longestWait);

/// The next message of a stream, without its length; nothing if the peer closes first.
[[nodiscard]] std::optional<Bytes> streamMessageFrom(int socket);

/// With its length ahead.
[[nodiscard]] Bytes streamMessage(View message);

} // namespace stillgate::test
