#include "tests/server/RawConnection.h"

#include <algorithm>
#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/host_name_verification.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>
#include <stdexcept>

namespace stillgate::test
{

namespace
{

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;

constexpr std::chrono::seconds longestStep{30};

} // namespace

struct RawConnection::Machinery
{
    asio::io_context context;
    asio::ssl::context trust{asio::ssl::context::tls_client};
    beast::ssl_stream<beast::tcp_stream> stream{context, trust};
    beast::flat_buffer received;
    bool isEncrypted = false;

    [[nodiscard]] beast::tcp_stream& transport() { return stream.next_layer(); }

    /// Does one step, and gives what it ended with.
    template <class Step>
    error_code run(const Step& step, std::chrono::milliseconds limit = longestStep)
    {
        error_code result;
        transport().expires_after(limit);
        step([&result](const error_code& error, auto&&...) { result = error; });
        context.restart();
        context.run();
        return result;
    }

    /// The step on the stream that is in use.
    template <class Step>
    error_code runOnStream(const Step& step, std::chrono::milliseconds limit = longestStep)
    {
        return run(
            [&](auto handler) {
                if (isEncrypted)
                    step(stream, std::move(handler));
                else
                    step(transport(), std::move(handler));
            },
            limit);
    }

    void connect(std::uint16_t port)
    {
        const tcp::endpoint server{asio::ip::address_v4::loopback(), port};
        check(run([&](auto handler) { transport().async_connect(server, std::move(handler)); }));
    }

    void encrypt(const std::string& authority)
    {
        trust.add_certificate_authority(asio::buffer(authority));
        stream.set_verify_mode(asio::ssl::verify_peer);
        stream.set_verify_callback(asio::ssl::host_name_verification{"127.0.0.1"});
        isEncrypted = true;
        check(run([&](auto handler) { stream.async_handshake(asio::ssl::stream_base::client, std::move(handler)); }));
    }

    static void check(error_code error)
    {
        if (error)
            throw std::runtime_error{"Can't connect: " + error.message()};
    }
};

RawConnection::RawConnection(std::uint16_t port)
    : m_machinery(std::make_unique<Machinery>())
{
    m_machinery->connect(port);
}

RawConnection::RawConnection(std::uint16_t port, const std::string& authority)
    : RawConnection(port)
{
    m_machinery->encrypt(authority);
}

RawConnection::RawConnection(RawConnection&&) noexcept = default;
RawConnection::~RawConnection() = default;

bool RawConnection::send(std::string_view bytes)
{
    return !m_machinery->runOnStream(
        [&](auto& stream, auto handler) { asio::async_write(stream, asio::buffer(bytes), std::move(handler)); });
}

std::optional<RawAnswer> RawConnection::answer()
{
    return readAnswer(false);
}

std::optional<RawAnswer> RawConnection::answerToHead()
{
    return readAnswer(true);
}

std::optional<RawAnswer> RawConnection::readAnswer(bool isToHead)
{
    http::response_parser<http::string_body> parser;
    parser.skip(isToHead);
    parser.body_limit(boost::none);
    const auto error = m_machinery->runOnStream([&](auto& stream, auto handler) {
        http::async_read(stream, m_machinery->received, parser, std::move(handler));
    });
    if (error)
        return std::nullopt;
    RawAnswer answer{.status = static_cast<int>(parser.get().result_int()), .headers = {}, .body = parser.get().body()};
    for (const auto& field : parser.get()) {
        std::string name{field.name_string()};
        std::ranges::transform(name, name.begin(), [](unsigned char letter) { return std::tolower(letter); });
        answer.headers[name] = field.value();
    }
    return answer;
}

bool RawConnection::isClosedWithin(std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::array<char, 65536> ignored{};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left <= left.zero())
            return false;
        const auto error = m_machinery->runOnStream(
            [&](auto& stream, auto handler) { stream.async_read_some(asio::buffer(ignored), std::move(handler)); },
            left);
        if (error)
            return error != beast::error::timeout;
    }
}

void RawConnection::reset()
{
    auto& socket = m_machinery->transport().socket();
    error_code ignored;
    socket.set_option(asio::socket_base::linger{true, 0}, ignored);
    socket.close(ignored);
}

std::string rawRequest(std::string_view method, std::string_view target, std::string_view token, std::string_view body)
{
    auto request = std::string{method} + ' ' + std::string{target} + " HTTP/1.1\r\nHost: 127.0.0.1\r\n";
    if (!token.empty())
        request += "Authorization: Bearer " + std::string{token} + "\r\n";
    if (!body.empty())
        request += "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
    return request + "\r\n" + std::string{body};
}

} // namespace stillgate::test
