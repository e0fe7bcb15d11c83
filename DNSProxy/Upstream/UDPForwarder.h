#pragma once

#include "Message/Query.h"
#include "Upstream/Asker.h"
#include "Upstream/UpstreamSockets.h"

namespace stillgate::dns
{

/// A query under way to the upstreams, for everybody who asks the same meanwhile.
struct Flight
{
    struct Attempt
    {
        std::shared_ptr<UpstreamSocket> socket;
        std::uint16_t id;
    };

    Question question;
    std::optional<std::uint64_t> key; ///< of what is asked; nothing if nobody else may join
    std::vector<WaitingAsker> askers; ///< never empty; the first one's query is sent
    std::vector<Attempt> attempts;    ///< an answer to an early one still counts
    Upstreams::Tried tried = 0;
    SteadyTime begun;
    SteadyTime nextAttempt;
};

/// Sends queries on over UDP until one is answered.
///
/// THREAT: anybody can send datagrams that look like answers. One counts only from the upstream's address and port, to
/// the port and with the ID of a query that is under way, and with its question (RFC 5452, 9.1).
class UDPForwarder
{
public:
    static constexpr std::size_t mostFlights = 10'000; ///< beyond, the one that waits longest fails

    UDPForwarder(EventLoop& loop, Upstreams& upstreams, ForwardedQueries& queries);

    /// Takes a query; it goes out with the next flush(). `key` is the same for the same question and no other one, but
    /// by chance.
    void forward(const Query& query, std::uint64_t key, const Asker& asker);

    /// Sends what has gathered, over one socket.
    void flush();

    /// After the list of upstreams has changed. What is under way goes to the new ones with its next attempt.
    void renewSockets();

private:
    using Flights = std::list<Flight>;
    using Each = Flights::iterator;

    bool join(const Query& query, std::uint64_t key, const Asker& asker);
    void sendSoon(Each flight);
    void send(std::vector<Each> flights);
    [[nodiscard]] std::vector<Each> sendTo(std::size_t upstream, const std::vector<Each>& flights);
    [[nodiscard]] bool addTo(DatagramBatch& batch, const std::shared_ptr<UpstreamSocket>& socket, Each flight);
    void receive(const std::weak_ptr<UpstreamSocket>& socket);
    void takeAnswer(UpstreamSocket& socket, View answer);
    [[nodiscard]] bool isAskedElsewhere(Each flight, View answer);
    void leave(UpstreamSocket& socket);
    void remove(Each flight);
    void fail(Each flight);
    void tick();

    Upstreams& m_upstreams;
    ForwardedQueries& m_queries;
    RandomNumbers m_random;
    ReceivedDatagrams m_received;
    DatagramBatch m_batch;
    Flights m_flights; ///< by their next attempts
    std::unordered_multimap<std::uint64_t, Each> m_byKey;
    std::vector<Each> m_unsent;
    UpstreamSockets m_sockets; ///< behind the flights: these end first
    Timer m_ticks;
};

} // namespace stillgate::dns
