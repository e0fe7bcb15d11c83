#pragma once

#include "HTTP/Message.h"
#include "Platform/Log.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace stillgate::server
{

/// An HTTP/1.1 server (RFC 9112) on one thread; what answers the requests may run on others.
///
/// THREAT: whoever can reach the port can open connections and say nothing, or a byte a second. Every step of a
/// conversation has its limit, so that such a connection costs its memory for some seconds and nobody else's time.
class HTTPServer
{
public:
    struct Limits
    {
        std::size_t headerBytes = 16 * 1024;
        std::size_t bodyBytes = 1024 * 1024;
        std::size_t connections = 2000;     ///< a further one is closed at once
        std::size_t connectionsOfOne = 500; ///< by network (networkOf): one customer doesn't take the others' places
        std::chrono::milliseconds handshake{10'000};
        std::chrono::milliseconds header{15'000}; ///< also how long a kept connection may stay idle
        std::chrono::milliseconds body{30'000};
        std::chrono::milliseconds answer{30'000}; ///< for the peer to take it
        std::chrono::milliseconds farewell{2'000};
    };

    struct Certificate
    {
        std::string chainFile; ///< PEM, the server's own certificate first
        std::string keyFile;   ///< PEM
    };

    /// Takes the answer, once, from any thread.
    using Answer = std::function<void(Response)>;
    using Handler = std::function<void(Request, Answer)>;

    HTTPServer(Handler handler, Limits limits, Log& log);
    ~HTTPServer();

    /// Listens on an IP address, with TLS where there is a certificate. Port 0 takes a free one. Returns the port.
    /// Throws std::runtime_error if the address is in use, or the certificate or key can't be used.
    std::uint16_t listen(const std::string& address, std::uint16_t port, const Certificate* certificate);

    /// Serves until a SIGINT or SIGTERM, or until stop(). Requests that are being answered get their answer first.
    void run();

    /// From any thread.
    void stop();

private:
    struct Machinery;
    std::unique_ptr<Machinery> m_machinery;
};

} // namespace stillgate::server
