#include "tests/server/RawConnection.h"

#include <algorithm>
#include <array>
#include <boost/asio/buffer.hpp>
#include <boost/beast/http.hpp>
#include <cerrno>
#include <csignal>
#include <openssl/ssl.h>
#include <stdexcept>
#include <sys/socket.h>

namespace stillgate::test
{

namespace
{

namespace http = boost::beast::http;

constexpr std::chrono::seconds longestStep{30};

/// A context that trusts this authority for 127.0.0.1 alone.
std::shared_ptr<SSL_CTX> trustIn(const std::string& authority)
{
    std::shared_ptr<SSL_CTX> context{::SSL_CTX_new(TLS_client_method()), ::SSL_CTX_free};
    const std::shared_ptr<BIO> text{
        ::BIO_new_mem_buf(authority.data(), static_cast<int>(authority.size())), ::BIO_free};
    const std::shared_ptr<X509> certificate{::PEM_read_bio_X509(text.get(), nullptr, nullptr, nullptr), ::X509_free};
    ::X509_STORE_add_cert(::SSL_CTX_get_cert_store(context.get()), certificate.get());
    ::X509_VERIFY_PARAM_set1_ip_asc(::SSL_CTX_get0_param(context.get()), "127.0.0.1");
    ::SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
    return context;
}

} // namespace

RawConnection::RawConnection(std::uint16_t port)
    : m_stream(::BIO_new_connect(("127.0.0.1:" + std::to_string(port)).c_str()), ::BIO_free_all)
{
    std::signal(SIGPIPE, SIG_IGN); // peers that close are what is tried
    if (BIO_do_connect(m_stream.get()) != 1)
        throw std::runtime_error{"Can't connect"};
    setLimit(longestStep);
}

RawConnection::RawConnection(std::uint16_t port, const std::string& authority)
    : RawConnection(port)
{
    m_stream.reset(::BIO_push(::BIO_new_ssl(trustIn(authority).get(), 1), m_stream.release()));
    if (BIO_do_handshake(m_stream.get()) != 1)
        throw std::runtime_error{"No handshake"};
}

bool RawConnection::send(std::string_view bytes)
{
    return bytes.empty() ||
        ::BIO_write(m_stream.get(), bytes.data(), static_cast<int>(bytes.size())) == std::ssize(bytes);
}

std::optional<RawAnswer> RawConnection::answer(bool isToHead)
{
    http::response_parser<http::string_body> parser;
    parser.skip(isToHead);
    parser.eager(true);
    parser.body_limit(boost::none);
    while (!parser.is_done()) {
        boost::system::error_code error;
        m_received.erase(0, parser.put(boost::asio::buffer(m_received), error));
        if (parser.is_done())
            break;
        std::array<char, 65536> more{};
        const auto size = ::BIO_read(m_stream.get(), more.data(), more.size());
        if ((error && error != http::error::need_more) || size <= 0)
            return std::nullopt;
        m_received.append(more.data(), static_cast<std::size_t>(size));
    }
    RawAnswer answer{.status = static_cast<int>(parser.get().result_int()), .headers = {}, .body = parser.get().body()};
    for (const auto& field : parser.get()) {
        std::string name{field.name_string()};
        std::ranges::transform(name, name.begin(), [](unsigned char letter) { return std::tolower(letter); });
        answer.headers[name] = field.value();
    }
    return answer;
}

bool RawConnection::isClosedWithin(std::chrono::seconds limit)
{
    setLimit(limit);
    std::array<char, 65536> ignored{};
    errno = 0;
    while (::BIO_read(m_stream.get(), ignored.data(), ignored.size()) > 0) {
    }
    return errno != EAGAIN;
}

void RawConnection::reset()
{
    const linger none{.l_onoff = 1, .l_linger = 0}; // the kernel then resets, see socket(7)
    ::setsockopt(static_cast<int>(BIO_get_fd(m_stream.get(), nullptr)), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    m_stream.reset();
}

void RawConnection::setLimit(std::chrono::seconds limit)
{
    const timeval time{.tv_sec = limit.count(), .tv_usec = 0};
    for (const int direction : {SO_RCVTIMEO, SO_SNDTIMEO})
        ::setsockopt(static_cast<int>(BIO_get_fd(m_stream.get(), nullptr)), SOL_SOCKET, direction, &time, sizeof time);
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
