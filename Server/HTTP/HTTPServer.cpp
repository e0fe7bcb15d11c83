#include "HTTP/HTTPServer.h"

#include "HTTP/JSONAnswer.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>
#include <csignal>
#include <list>

namespace stillgate::server
{

namespace
{

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::use_awaitable;
using asio::ip::tcp;
using boost::system::error_code;

using PlainStream = beast::tcp_stream;
using EncryptedStream = beast::ssl_stream<beast::tcp_stream>;
using Parser = http::request_parser<http::string_body>;

/// Gives the error instead of throwing it.
const auto orError = [](error_code& error) { return asio::redirect_error(use_awaitable, error); };

Request requestFrom(Parser::value_type message, std::string address, bool isEncrypted)
{
    Request request{.method = std::string{message.method_string()},
        .path = {},
        .query = {},
        .headers = {},
        .body = std::move(message.body()),
        .address = std::move(address),
        .isEncrypted = isEncrypted};
    const std::string_view target = message.target();
    const auto questionMark = std::min(target.find('?'), target.size());
    request.path = target.substr(0, questionMark);
    request.query = target.substr(std::min(questionMark + 1, target.size()));
    for (const auto& field : message)
        request.headers.emplace(field.name_string(), field.value());
    return request;
}

http::response<http::string_body> messageFrom(Response response, unsigned version, bool keepAlive)
{
    http::response<http::string_body> message{static_cast<http::status>(response.status), version};
    if (!response.contentType.empty())
        message.set(http::field::content_type, response.contentType);
    for (const auto& [name, value] : response.headers)
        message.insert(name, value);
    message.body() = std::move(response.body);
    message.keep_alive(keepAlive);
    message.prepare_payload();
    return message;
}

/// What a request that can't be read is answered; nothing if there is nobody left to read it.
std::optional<Response> answerToUnreadable(error_code error)
{
    if (error == http::error::body_limit)
        return errorAnswer(413, "The body is larger than 1 MiB");
    if (error == http::error::header_limit || error == http::error::buffer_overflow)
        return errorAnswer(431, "The header is too large");
    const bool isMalformed = error.category() == make_error_code(http::error::bad_method).category() &&
        error != http::error::end_of_stream && error != http::error::partial_message;
    if (isMalformed)
        return errorAnswer(400, "This isn't a request of HTTP/1.1");
    return std::nullopt;
}

/// Counts one more as long as it lives.
class Counted
{
public:
    explicit Counted(std::size_t& count)
        : m_count(count)
    {
        ++m_count;
    }

    ~Counted() { --m_count; }

    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    std::size_t& m_count;
};

} // namespace

struct HTTPServer::Machinery
{
    Handler handler;
    Limits limits;
    Log& log;
    std::size_t connections = 0;
    std::map<std::string, std::size_t> connectionsOf; ///< by network
    std::size_t unanswered = 0;                       ///< requests that were read and whose answer hasn't gone yet
    bool isStopping = false;
    asio::io_context context{1}; ///< its end is that of all conversations, which use what stands above
    asio::signal_set signals{context};
    std::list<tcp::acceptor> acceptors;
    std::list<asio::ssl::context> certificates;

    void beginToStop()
    {
        isStopping = true;
        for (auto& acceptor : acceptors)
            acceptor.close();
        stopIfDone();
    }

    void stopIfDone()
    {
        if (isStopping && unanswered == 0)
            context.stop();
    }

    /// Hands the request out and waits for the answer, which may come from another thread.
    asio::awaitable<Response> answerTo(Request request)
    {
        const auto start = [this](auto resume, Request taken) {
            auto resumption = std::make_shared<decltype(resume)>(std::move(resume));
            handler(std::move(taken), [this, resumption](Response response) {
                asio::post(context,
                    [resumption, answer = std::move(response)]() mutable { (*resumption)(std::move(answer)); });
            });
        };
        co_return co_await asio::async_initiate<decltype(use_awaitable), void(Response)>(
            start, use_awaitable, std::move(request));
    }

    template <class Stream>
    asio::awaitable<error_code> send(Stream* stream, http::response<http::string_body> message, bool isHead = false)
    {
        error_code error;
        http::response_serializer<http::string_body> serializer{message};
        beast::get_lowest_layer(*stream).expires_after(limits.answer);
        if (isHead)
            co_await http::async_write_header(*stream, serializer, orError(error));
        else
            co_await http::async_write(*stream, serializer, orError(error));
        co_return error;
    }

    /// Closes after the peer had the chance to read: a close with bytes unread would take the answer back.
    template <class Stream>
    asio::awaitable<void> sayFarewell(Stream* stream)
    {
        auto& transport = beast::get_lowest_layer(*stream);
        transport.expires_after(limits.farewell);
        error_code error;
        if constexpr (std::is_same_v<Stream, EncryptedStream>)
            co_await stream->async_shutdown(orError(error));
        transport.socket().shutdown(tcp::socket::shutdown_send, error);
        std::array<char, 4096> unread{};
        while (!error)
            co_await transport.async_read_some(asio::buffer(unread), orError(error));
    }

    /// A time limit closes the connection, so that nothing can be answered after it.
    template <class Stream>
    asio::awaitable<error_code> read(Stream* stream, beast::flat_buffer* buffer, Parser* parser)
    {
        auto& transport = beast::get_lowest_layer(*stream);
        error_code error;
        transport.expires_after(limits.header);
        co_await http::async_read_header(*stream, *buffer, *parser, orError(error));
        if (!error && beast::iequals(parser->get()[http::field::expect], "100-continue"))
            co_await asio::async_write(
                *stream, asio::buffer(std::string_view{"HTTP/1.1 100 Continue\r\n\r\n"}), orError(error));
        if (!error) {
            transport.expires_after(limits.body);
            co_await http::async_read(*stream, *buffer, *parser, orError(error));
        }
        transport.expires_never();
        co_return error;
    }

    /// False if that was the last one of this connection.
    template <class Stream>
    asio::awaitable<bool> answerAndSend(Stream* stream, Parser::value_type message, std::string address)
    {
        const auto version = message.version();
        const bool isHead = message.method() == http::verb::head;
        bool keepAlive = message.keep_alive();
        const Counted counted{unanswered};
        auto response = co_await answerTo(
            requestFrom(std::move(message), std::move(address), std::is_same_v<Stream, EncryptedStream>));
        keepAlive = keepAlive && !isStopping;
        const auto error = co_await send(stream, messageFrom(std::move(response), version, keepAlive), isHead);
        co_return !error && keepAlive;
    }

    /// Request after request, until one side has had enough.
    template <class Stream>
    asio::awaitable<void> converse(Stream* stream, std::string address)
    {
        beast::flat_buffer buffer{limits.headerBytes + limits.bodyBytes};
        bool goesOn = true;
        while (goesOn) {
            Parser parser;
            parser.header_limit(static_cast<std::uint32_t>(limits.headerBytes));
            parser.body_limit(limits.bodyBytes);
            const auto error = co_await read(stream, &buffer, &parser);
            if (error) {
                if (auto answer = answerToUnreadable(error))
                    co_await send(stream, messageFrom(std::move(*answer), 11, false));
                break;
            }
            goesOn = co_await answerAndSend(stream, parser.release(), address);
            stopIfDone();
        }
        co_await sayFarewell(stream);
    }

    asio::awaitable<void> serve(tcp::socket socket, asio::ssl::context* certificate)
    {
        error_code error;
        const auto peer = socket.remote_endpoint(error);
        if (error)
            co_return;
        socket.set_option(tcp::no_delay{true}, error);
        const auto address = peer.address().to_string();
        if (certificate == nullptr) {
            PlainStream stream{std::move(socket)};
            co_await converse(&stream, address);
            co_return;
        }
        EncryptedStream stream{std::move(socket), *certificate};
        beast::get_lowest_layer(stream).expires_after(limits.handshake);
        co_await stream.async_handshake(asio::ssl::stream_base::server, orError(error));
        if (!error)
            co_await converse(&stream, address);
    }

    asio::awaitable<void> acceptAll(tcp::acceptor* acceptor, asio::ssl::context* certificate)
    {
        while (acceptor->is_open()) {
            error_code error;
            tcp::socket socket{context};
            co_await acceptor->async_accept(socket, orError(error));
            if (error) {
                // Out of descriptors, mostly: somebody has to close one first.
                asio::steady_timer pause{context, std::chrono::milliseconds{100}};
                co_await pause.async_wait(orError(error));
                continue;
            }
            const auto peer = socket.remote_endpoint(error);
            const auto network = error ? std::string{} : networkOf(peer.address().to_string());
            if (error || connections >= limits.connections || connectionsOf[network] >= limits.connectionsOfOne)
                continue;
            ++connections;
            ++connectionsOf[network];
            asio::co_spawn(
                context, serve(std::move(socket), certificate), [this, network](const std::exception_ptr& failure) {
                    --connections;
                    if (--connectionsOf[network] == 0)
                        connectionsOf.erase(network);
                    if (failure)
                        log.write("[Server] A connection ended in an exception");
                    stopIfDone();
                });
        }
    }
};

HTTPServer::HTTPServer(Handler handler, Limits limits, Log& log)
    : m_machinery(new Machinery{.handler = std::move(handler), .limits = limits, .log = log})
{}

HTTPServer::~HTTPServer() = default;

std::uint16_t HTTPServer::listen(const std::string& address, std::uint16_t port, const Certificate* certificate)
{
    auto& machinery = *m_machinery;
    asio::ssl::context* usedCertificate = nullptr;
    if (certificate != nullptr) {
        usedCertificate = &machinery.certificates.emplace_back(asio::ssl::context::tls_server);
        usedCertificate->set_options(
            asio::ssl::context::default_workarounds | asio::ssl::context::no_tlsv1 | asio::ssl::context::no_tlsv1_1);
        usedCertificate->use_certificate_chain_file(certificate->chainFile);
        usedCertificate->use_private_key_file(certificate->keyFile, asio::ssl::context::pem);
    }
    const tcp::endpoint endpoint{asio::ip::make_address(address), port};
    auto& acceptor = machinery.acceptors.emplace_back(machinery.context, endpoint);
    asio::co_spawn(machinery.context, machinery.acceptAll(&acceptor, usedCertificate), asio::detached);
    return acceptor.local_endpoint().port();
}

void HTTPServer::run()
{
    m_machinery->signals.add(SIGINT);
    m_machinery->signals.add(SIGTERM);
    m_machinery->signals.async_wait([this](const error_code& error, int) {
        if (!error)
            m_machinery->beginToStop();
    });
    m_machinery->context.run();
}

void HTTPServer::stop()
{
    asio::post(m_machinery->context, [this] { m_machinery->beginToStop(); });
}

} // namespace stillgate::server
