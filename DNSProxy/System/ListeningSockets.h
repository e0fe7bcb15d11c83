#pragma once

#include "Models/Result.h"
#include "Platform/Linux/FileDescriptor.h"
#include "System/Datagrams.h"

namespace stillgate::dns
{

/// The sockets that queries come to.
struct ListeningSockets
{
    std::vector<FileDescriptor> datagram;
    std::vector<FileDescriptor> stream;
    std::vector<Endpoint> addresses; ///< of the datagram sockets
};

/// Those that the service manager holds for this process (sd_listen_fds(3)), none if it doesn't. They aren't inherited
/// by children.
[[nodiscard]] Result<ListeningSockets> socketsOfServiceManager();

/// New ones: for each address a datagram and a stream socket on the same port. Port 0 takes a free one.
[[nodiscard]] Result<ListeningSockets> openSockets(const std::vector<Endpoint>& addresses);

} // namespace stillgate::dns
