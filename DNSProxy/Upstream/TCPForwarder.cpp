#include "Upstream/TCPForwarder.h"

#include <cerrno>

namespace stillgate::dns
{

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto attemptTime = 2s;
constexpr auto totalTime = 5s;

/// Connected, or about to be; nothing open where there is no way.
FileDescriptor connectingSocket(const Endpoint& upstream)
{
    constexpr int type = SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC;
    FileDescriptor socket{::socket(upstream.data()->sa_family, type, 0)};
    const bool isUnderWay = socket.isOpen() &&
        (::connect(socket.number(), upstream.data(), static_cast<socklen_t>(upstream.size())) == 0 ||
            errno == EINPROGRESS);
    return isUnderWay ? std::move(socket) : FileDescriptor{-1};
}

} // namespace

/// A query on its way, from upstream to upstream until one answers.
class TCPForwarder::Flight final : private MessageStream::Owner
{
public:
    Flight(TCPForwarder& forwarder, WaitingAsker asker, const Question& question)
        : m_forwarder(forwarder)
        , m_asker(std::move(asker))
        , m_question(question)
        , m_next(forwarder.m_loop, [this] { tryNext(); })
    {
        m_next.start(0s);
    }

private:
    void tryNext()
    {
        m_stream.reset();
        const auto now = Clock::now();
        const auto upstream = m_forwarder.m_upstreams.choose(m_tried, now);
        if (!upstream || now - m_begun > totalTime) {
            m_forwarder.m_queries.takeFailure({&m_asker, 1});
            m_forwarder.remove(*this);
            return;
        }
        m_tried |= static_cast<Upstreams::Tried>(1U << *upstream);
        m_upstream = m_forwarder.m_upstreams.endpoint(*upstream);
        auto socket = connectingSocket(m_upstream);
        if (!socket.isOpen()) {
            leave();
            return;
        }
        m_stream = std::make_unique<MessageStream>(
            m_forwarder.m_loop, std::move(socket), static_cast<MessageStream::Owner&>(*this), attemptTime);
        m_stream->send(m_asker.query);
    }

    void takeMessage(View message) override
    {
        constexpr std::uint16_t kind = flag::response | flag::opcode;
        const auto answered = Question::of(message);
        const bool isAnswer = answered && answered->isSame(m_question) &&
            number16(message, 0) == number16(m_asker.query, 0) &&
            (number16(message, Header::flags) & kind) == flag::response;
        if (!isAnswer) {
            leave();
            return;
        }
        m_forwarder.m_upstreams.noteAnswer(m_upstream);
        m_forwarder.m_queries.takeAnswer(message, {&m_asker, 1});
        m_stream->close();
        m_forwarder.remove(*this);
    }

    void takeEnd(bool) override { leave(); }

    void leave()
    {
        m_forwarder.m_upstreams.noteFailure(m_upstream, Clock::now());
        if (m_stream)
            m_stream->close();
        m_next.start(0s); // not in here: it is the stream that says so
    }

    TCPForwarder& m_forwarder;
    WaitingAsker m_asker;
    Question m_question;
    Timer m_next;
    Upstreams::Tried m_tried = 0;
    Clock::time_point m_begun = Clock::now();
    Endpoint m_upstream;
    std::unique_ptr<MessageStream> m_stream;
};

TCPForwarder::TCPForwarder(EventLoop& loop, Upstreams& upstreams, ForwardedQueries& queries)
    : m_loop(loop)
    , m_upstreams(upstreams)
    , m_queries(queries)
{}

TCPForwarder::~TCPForwarder() = default;

void TCPForwarder::forward(const Query& query, const Asker& asker)
{
    WaitingAsker waiting{.asker = asker, .query = {query.message.begin(), query.message.end()}};
    if (m_flights.size() < mostFlights)
        m_flights.emplace_back(*this, std::move(waiting), query.question);
    else
        m_queries.takeFailure({&waiting, 1});
}

/// Later: it is the flight itself that has ended.
void TCPForwarder::remove(Flight& flight)
{
    m_loop.post([this, &flight] { m_flights.remove_if([&](const Flight& other) { return &other == &flight; }); });
}

} // namespace stillgate::dns
