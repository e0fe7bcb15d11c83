#include "Upstream/UDPForwarder.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace stillgate::dns
{

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto attemptTime = 1s;
constexpr auto totalTime = 5s;
constexpr auto tickTime = 100ms;

constexpr std::size_t answersAtOnce = 32;
constexpr std::size_t largestDatagram = 65'535;

bool isAnswerTo(const Question& question, View answer)
{
    constexpr std::uint16_t kind = flag::response | flag::opcode;
    const auto answered = Question::of(answer);
    return answered && answered->isSame(question) && (number16(answer, Header::flags) & kind) == flag::response;
}

} // namespace

UDPForwarder::UDPForwarder(EventLoop& loop, Upstreams& upstreams, ForwardedQueries& queries)
    : m_upstreams(upstreams)
    , m_queries(queries)
    , m_received(answersAtOnce, largestDatagram)
    , m_sockets([this, &loop](const std::shared_ptr<UpstreamSocket>& socket) {
        socket->watch(loop, [this, weak = std::weak_ptr{socket}](std::uint32_t) { receive(weak); });
    })
    , m_ticks(loop, [this] { tick(); })
{}

void UDPForwarder::forward(const Query& query, std::uint64_t key, const Asker& asker)
{
    if (query.isShareable() && join(query, key, asker))
        return;
    if (m_flights.size() >= mostFlights)
        fail(m_flights.begin());
    const auto now = Clock::now();
    m_flights.push_back({.question = query.question,
        .key = {},
        .askers = {{.asker = asker, .query = {query.message.begin(), query.message.end()}}},
        .attempts = {},
        .begun = now,
        .nextAttempt = now + attemptTime});
    const auto flight = std::prev(m_flights.end());
    if (query.isShareable()) {
        flight->key = key;
        m_byKey.emplace(key, flight);
    }
    m_unsent.push_back(flight);
    if (!m_ticks.isRunning())
        m_ticks.start(tickTime);
}

/// Asking twice at once would double the chance of a forged answer (RFC 5452, 5).
bool UDPForwarder::join(const Query& query, std::uint64_t key, const Asker& asker)
{
    constexpr std::size_t mostAskers = 64;
    const auto [begin, end] = m_byKey.equal_range(key);
    for (auto found = begin; found != end; ++found) {
        auto& flight = *found->second;
        if (!flight.question.isSame(query.question) || flight.askers.size() >= mostAskers)
            continue;
        flight.askers.push_back({.asker = asker, .query = {query.message.begin(), query.message.end()}});
        return true;
    }
    return false;
}

void UDPForwarder::flush()
{
    if (!m_unsent.empty())
        send(std::exchange(m_unsent, {}));
}

void UDPForwarder::renewSockets()
{
    m_sockets.renewAll();
    for (auto& flight : m_flights)
        flight.tried = 0;
}

/// Once more, and not twice if two of its attempts have ended.
void UDPForwarder::sendSoon(Each flight)
{
    if (std::ranges::find(m_unsent, flight) == m_unsent.end())
        m_unsent.push_back(flight);
}

/// To the first upstream of each that can be reached. Those that can't go anywhere fail at once.
void UDPForwarder::send(std::vector<Each> flights)
{
    std::array<std::vector<Each>, Upstreams::most> byUpstream;
    while (!flights.empty()) {
        const auto now = Clock::now();
        for (const auto flight : flights) {
            const auto upstream = m_upstreams.choose(flight->tried, now);
            if (upstream)
                byUpstream.at(*upstream).push_back(flight);
            else
                fail(flight);
        }
        flights.clear();
        for (std::size_t upstream = 0; upstream < byUpstream.size(); ++upstream) {
            const auto unsent = sendTo(upstream, std::exchange(byUpstream.at(upstream), {}));
            flights.insert(flights.end(), unsent.begin(), unsent.end());
        }
    }
}

/// Gives those that couldn't be sent.
std::vector<UDPForwarder::Each> UDPForwarder::sendTo(std::size_t upstream, const std::vector<Each>& flights)
{
    if (flights.empty())
        return {};
    const auto now = Clock::now();
    const auto endpoint = m_upstreams.endpoint(upstream);
    for (const auto flight : flights)
        flight->tried |= static_cast<Upstreams::Tried>(1U << upstream);
    const auto socket = m_sockets.any(endpoint, now, m_random);
    if (!socket) {
        m_upstreams.noteFailure(endpoint, now);
        return flights;
    }
    std::vector<Each> sent;
    std::vector<Each> unsent;
    for (const auto flight : flights)
        (addTo(m_batch, socket, flight) ? sent : unsent).push_back(flight);
    for (const auto index : m_batch.send(socket->descriptor())) {
        m_upstreams.noteFailure(endpoint, now);
        unsent.push_back(sent[index]);
    }
    return unsent;
}

bool UDPForwarder::addTo(DatagramBatch& batch, const std::shared_ptr<UpstreamSocket>& socket, Each flight)
{
    const auto id = socket->addQuery(flight, m_random);
    if (!id)
        return false;
    flight->attempts.push_back({.socket = socket, .id = *id});
    auto& query = flight->askers.front().query;
    const auto own = number16(query, 0);
    put16(query, 0, *id);
    batch.add(query);
    put16(query, 0, own);
    return true;
}

void UDPForwarder::receive(const std::weak_ptr<UpstreamSocket>& watched)
{
    const auto socket = watched.lock(); // until the end: the last answer would take it away
    if (!socket)
        return;
    errno = 0;
    const auto count = m_received.receive(socket->descriptor());
    for (std::size_t index = 0; index < count; ++index)
        takeAnswer(*socket, m_received[index]);
    // What the network has said about an earlier datagram: nobody listens there, or there is no way.
    if (count == 0 && errno != EAGAIN && errno != EINTR)
        leave(*socket);
}

void UDPForwarder::takeAnswer(UpstreamSocket& socket, View answer)
{
    if (answer.size() < Header::size)
        return;
    const auto flight = socket.queryOf(number16(answer, 0));
    if (!flight || !isAnswerTo((*flight)->question, answer))
        return;
    m_upstreams.noteAnswer(socket.upstream());
    if (isAskedElsewhere(*flight, answer))
        return;
    const auto askers = std::move((*flight)->askers);
    remove(*flight);
    m_queries.takeAnswer(answer, askers);
}

/// An upstream that can't or won't say may not be the only one.
bool UDPForwarder::isAskedElsewhere(Each flight, View answer)
{
    const auto code = static_cast<ResponseCode>(number16(answer, Header::flags) & flag::responseCode);
    const bool saysNothing =
        code == ResponseCode::serverFailure || code == ResponseCode::refused || code == ResponseCode::notImplemented;
    if (!saysNothing || !m_upstreams.choose(flight->tried, Clock::now()))
        return false;
    sendSoon(flight);
    return true;
}

/// Its queries go to other upstreams at once; where there is none, they wait for their next attempt.
void UDPForwarder::leave(UpstreamSocket& socket)
{
    const auto now = Clock::now();
    m_upstreams.noteFailure(socket.upstream(), now);
    m_sockets.renew(socket.upstream());
    for (const auto flight : socket.queries()) {
        if (m_upstreams.choose(flight->tried, now))
            sendSoon(flight);
    }
}

void UDPForwarder::remove(Each flight)
{
    for (const auto& attempt : flight->attempts)
        attempt.socket->removeQuery(attempt.id);
    if (flight->key) {
        const auto [begin, end] = m_byKey.equal_range(*flight->key);
        m_byKey.erase(std::find_if(begin, end, [&](const auto& entry) { return entry.second == flight; }));
    }
    std::erase(m_unsent, flight);
    m_flights.erase(flight);
}

void UDPForwarder::fail(Each flight)
{
    const auto askers = std::move(flight->askers);
    remove(flight);
    m_queries.takeFailure(askers);
}

void UDPForwarder::tick()
{
    const auto now = Clock::now();
    std::vector<Each> again;
    while (!m_flights.empty() && m_flights.front().nextAttempt <= now) {
        const auto flight = m_flights.begin();
        if (now - flight->begun >= totalTime) {
            fail(flight);
            continue;
        }
        if (!flight->attempts.empty()) {
            m_upstreams.noteFailure(flight->attempts.back().socket->upstream(), now);
            m_sockets.renew(flight->attempts.back().socket->upstream());
        }
        if (!m_upstreams.choose(flight->tried, now))
            flight->tried = 0;
        flight->nextAttempt = now + attemptTime;
        m_flights.splice(m_flights.end(), m_flights, flight);
        again.push_back(flight);
    }
    send(std::move(again));
    if (!m_flights.empty())
        m_ticks.start(tickTime);
}

} // namespace stillgate::dns
