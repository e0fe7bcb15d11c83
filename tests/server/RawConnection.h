#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate::test
{

struct RawAnswer
{
    int status = 0;
    std::map<std::string, std::string> headers; ///< names in lower case
    std::string body;
};

/// A connection to a port of 127.0.0.1 that sends whatever bytes it is told. No step takes longer than half a minute.
class RawConnection
{
public:
    /// Without TLS. Throws std::runtime_error if nobody listens.
    explicit RawConnection(std::uint16_t port);

    /// With TLS, the handshake done, to a server with a certificate of this authority (PEM).
    RawConnection(std::uint16_t port, const std::string& authority);

    RawConnection(RawConnection&&) noexcept;
    ~RawConnection();

    /// False if the peer has closed, or takes nothing.
    bool send(std::string_view bytes);

    /// The next answer; nothing if the peer closes before its end, or it is none of HTTP/1.1.
    std::optional<RawAnswer> answer();

    /// The same to a request of the method HEAD: its end is that of its headers.
    std::optional<RawAnswer> answerToHead();

    /// Waits for the peer to close; what comes before that is thrown away. False if it doesn't in time.
    bool isClosedWithin(std::chrono::milliseconds limit);

    /// Ends the connection with a reset instead of an orderly close.
    void reset();

private:
    std::optional<RawAnswer> readAnswer(bool isToHead);

    struct Machinery;
    std::unique_ptr<Machinery> m_machinery;
};

/// A request of HTTP/1.1 with the token, unless that is empty, and a body of JSON, unless that is.
[[nodiscard]] std::string rawRequest(
    std::string_view method, std::string_view target, std::string_view token = {}, std::string_view body = {});

} // namespace stillgate::test
