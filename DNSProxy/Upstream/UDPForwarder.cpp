#include "Upstream/UDPForwarder.h"

#include "Upstream/UpstreamAnswers.h"

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

/// Over one socket: what its buffer has room for, and few enough that an upstream's answers fit into it as well.
constexpr std::size_t queriesAtOnce = 64;

/// In bytes. A failure with an explanation (RFC 8914) is smaller, and nobody's answer is kept that is large.
constexpr std::size_t largestPoorAnswer = 1232;

/// This machine's own limits say nothing about an upstream.
bool isOwnLimit(int code)
{
    return code == EAGAIN || code == ENOBUFS || code == ENOMEM;
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
    if (m_askers >= mostAskers)
        fail(m_flights.begin());
    ++m_askers;
    if (query.isShareable() && join(query, key, asker))
        return;
    const auto now = Clock::now();
    m_flights.push_back({.question = query.question,
        .key = {},
        .askers = {{.asker = asker, .query = {query.message.begin(), query.message.end()}}},
        .attempts = {},
        .poorAnswer = {},
        .generation = m_upstreams.generation(),
        .begun = now,
        .nextAttempt = now + attemptTime});
    const auto flight = std::prev(m_flights.end());
    if (query.isShareable() && m_byKey.try_emplace(key, flight).second)
        flight->key = key;
    m_unsent.push_back(flight);
    if (!m_ticks.isRunning())
        m_ticks.start(tickTime);
}

/// Asking twice at once would double the chance of a forged answer (RFC 5452, 5).
bool UDPForwarder::join(const Query& query, std::uint64_t key, const Asker& asker)
{
    constexpr std::size_t mostTogether = 64;
    const auto found = m_byKey.find(key);
    if (found == m_byKey.end() || !found->second->question.isSame(query.question))
        return false;
    auto& flight = *found->second;
    flight.askers.push_back({.asker = asker, .query = query.withoutOptions()});
    if (flight.askers.size() == mostTogether) {
        m_byKey.erase(found);
        flight.key.reset();
    }
    return true;
}

void UDPForwarder::flush()
{
    if (!m_unsent.empty())
        send(std::exchange(m_unsent, {}));
}

void UDPForwarder::renewSockets()
{
    m_sockets.renewAll();
    m_byKey.clear(); // who asks from now on asks the new ones
    for (auto& flight : m_flights) {
        flight.key.reset();
        flight.tried = 0;
    }
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
            const auto all = std::exchange(byUpstream.at(upstream), {});
            for (std::size_t begin = 0; begin < all.size(); begin += queriesAtOnce)
                sendTo(upstream, std::span{all}.subspan(begin, std::min(queriesAtOnce, all.size() - begin)), flights);
        }
    }
}

/// Over one socket. Those go to `unsent` that have to try another upstream; where it is for want of room on this
/// machine, they wait for their next attempt.
void UDPForwarder::sendTo(std::size_t upstream, std::span<const Each> flights, std::vector<Each>& unsent)
{
    const auto bit = static_cast<Upstreams::Tried>(1U << upstream);
    const auto now = Clock::now();
    const auto endpoint = m_upstreams.endpoint(upstream);
    for (const auto flight : flights)
        flight->tried |= bit;
    const auto socket = m_sockets.any(endpoint, now, m_random);
    if (!socket) {
        m_upstreams.noteFailure(endpoint, now);
        unsent.insert(unsent.end(), flights.begin(), flights.end());
        return;
    }
    const auto putOff = [bit](Each flight) { flight->tried &= static_cast<Upstreams::Tried>(~bit); };
    std::vector<Each> sent;
    for (const auto flight : flights) {
        if (addTo(m_batch, socket, flight))
            sent.push_back(flight);
        else
            putOff(flight);
    }
    for (const auto& [place, code] : m_batch.send(socket->descriptor())) {
        const auto flight = sent[place];
        if (isOwnLimit(code)) {
            putOff(flight);
            socket->removeQuery(flight->attempts.back().id);
            flight->attempts.pop_back();
        } else {
            m_upstreams.noteFailure(endpoint, now);
            unsent.push_back(flight);
        }
    }
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
    if (!isAskedElsewhere(*flight, answer))
        deliver(*flight, answer);
}

/// An upstream that can't or won't say may not be the only one.
bool UDPForwarder::isAskedElsewhere(Each flight, View answer)
{
    if (!saysNothing(answer) || hasTriedAll(flight, Clock::now()))
        return false;
    if (answer.size() <= largestPoorAnswer)
        flight->poorAnswer.assign(answer.begin(), answer.end());
    sendSoon(flight);
    return true;
}

bool UDPForwarder::hasTriedAll(Each flight, SteadyTime now) const
{
    return !m_upstreams.choose(flight->tried, now);
}

/// Its queries go to other upstreams at once; where there is none, they wait for their next attempt.
void UDPForwarder::leave(UpstreamSocket& socket)
{
    const auto now = Clock::now();
    m_upstreams.noteFailure(socket.upstream(), now);
    m_sockets.renew(socket.upstream());
    for (const auto flight : socket.queries()) {
        if (!hasTriedAll(flight, now))
            sendSoon(flight);
    }
}

/// Gives those who wait for its answer.
std::vector<WaitingAsker> UDPForwarder::remove(Each flight)
{
    for (const auto& attempt : flight->attempts)
        attempt.socket->removeQuery(attempt.id);
    if (flight->key)
        m_byKey.erase(*flight->key);
    std::erase(m_unsent, flight);
    auto askers = std::move(flight->askers);
    m_askers -= askers.size();
    m_flights.erase(flight);
    return askers;
}

void UDPForwarder::deliver(Each flight, View answer)
{
    const bool isCurrent = flight->generation == m_upstreams.generation();
    const auto askers = remove(flight);
    m_queries.takeAnswer(answer, askers, isCurrent);
}

/// With the answer of an upstream that says nothing, if one has come.
void UDPForwarder::fail(Each flight)
{
    const auto poorAnswer = std::move(flight->poorAnswer);
    if (poorAnswer.empty())
        m_queries.takeFailure(remove(flight));
    else
        deliver(flight, poorAnswer);
}

/// Of the upstream that was asked last.
void UDPForwarder::noteSilence(const Flight& flight, SteadyTime now)
{
    if (flight.attempts.empty())
        return;
    const auto& upstream = flight.attempts.back().socket->upstream();
    m_upstreams.noteFailure(upstream, now);
    m_sockets.renew(upstream);
}

void UDPForwarder::tick()
{
    const auto now = Clock::now();
    std::vector<Each> again;
    while (!m_flights.empty() && m_flights.front().nextAttempt <= now) {
        const auto flight = m_flights.begin();
        noteSilence(*flight, now);
        const bool isTriedOut = hasTriedAll(flight, now);
        if (now - flight->begun >= totalTime || (isTriedOut && !flight->poorAnswer.empty())) {
            fail(flight);
            continue;
        }
        if (isTriedOut)
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
