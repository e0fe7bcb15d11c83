#include "Upstream/TCPForwarder.h"

#include "Upstream/UpstreamAnswers.h"

#include <cerrno>

namespace stillgate::dns
{

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto attemptTime = 2s; // the last one to be tried has all that is left
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
        , m_end(forwarder.m_loop, [this] { fail(); })
    {
        m_next.start(0s);
        m_end.start(totalTime);
    }

private:
    void tryNext()
    {
        m_stream.reset();
        const auto& upstreams = m_forwarder.m_upstreams;
        if (std::exchange(m_generation, upstreams.generation()) != upstreams.generation())
            m_tried = 0;
        const auto upstream = upstreams.choose(m_tried, Clock::now());
        if (!upstream) {
            fail();
            return;
        }
        m_tried |= static_cast<Upstreams::Tried>(1U << *upstream);
        auto socket = connectingSocket(upstreams.endpoint(*upstream));
        if (!socket.isOpen()) {
            leave();
            return;
        }
        const bool isLastHope = hasTriedAll() && m_poorAnswer.empty();
        m_stream = std::make_unique<MessageStream>(m_forwarder.m_loop, std::move(socket),
            static_cast<MessageStream::Owner&>(*this), isLastHope ? totalTime : attemptTime);
        m_stream->send(m_asker.query);
    }

    [[nodiscard]] bool hasTriedAll() const { return !m_forwarder.m_upstreams.choose(m_tried, Clock::now()); }

    void takeMessage(View message) override
    {
        const bool isAnswer = isAnswerTo(m_question, message) && number16(message, 0) == number16(m_asker.query, 0);
        if (isAnswer && (!saysNothing(message) || hasTriedAll())) {
            deliver(message);
            return;
        }
        if (isAnswer)
            m_poorAnswer.assign(message.begin(), message.end());
        leave();
    }

    void takeEnd(bool) override { leave(); }

    /// For the next one. Whether this one answers over UDP is another question, so it isn't noted.
    void leave()
    {
        if (m_stream)
            m_stream->close();
        m_next.start(0s); // not in here: it is the stream that says so
    }

    void deliver(View answer)
    {
        const bool isCurrent = m_generation == m_forwarder.m_upstreams.generation();
        m_forwarder.m_queries.takeAnswer(answer, {&m_asker, 1}, isCurrent);
        finish();
    }

    void fail()
    {
        if (!m_poorAnswer.empty()) {
            deliver(m_poorAnswer);
            return;
        }
        m_forwarder.m_queries.takeFailure({&m_asker, 1});
        finish();
    }

    void finish()
    {
        m_next.cancel();
        m_end.cancel();
        if (m_stream)
            m_stream->close();
        m_forwarder.remove(*this);
    }

    TCPForwarder& m_forwarder;
    WaitingAsker m_asker;
    Question m_question;
    Timer m_next;
    Timer m_end;
    Upstreams::Tried m_tried = 0;
    std::uint64_t m_generation = 0; ///< of the upstreams that these are
    Bytes m_poorAnswer;             ///< of an upstream that says nothing; good enough if no other one answers
    std::unique_ptr<MessageStream> m_stream;
};

TCPForwarder::TCPForwarder(EventLoop& loop, const Upstreams& upstreams, ForwardedQueries& queries)
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
