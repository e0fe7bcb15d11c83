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
    Bytes poorAnswer;                 ///< of an upstream that says nothing; good enough if no other one answers
    Upstreams::Tried tried = 0;
    std::uint64_t generation = 0; ///< of the upstreams, when it began
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
    /// THREAT: whoever asks without end takes memory and IDs from all. Beyond, those fail who wait longest.
    static constexpr std::size_t mostAskers = 10'000;

    UDPForwarder(EventLoop& loop, Upstreams& upstreams, ForwardedQueries& queries);

    /// Takes a query; it goes out with the next flush(). `key` is the same for the same question and no other one, but
    /// by chance.
    void forward(const Query& query, std::uint64_t key, const Asker& asker);

    /// Sends what has gathered, many queries over one socket.
    void flush();

    /// After the list of upstreams has changed. What is under way goes to the new ones with its next attempt.
    void renewSockets();

private:
    using Flights = std::list<Flight>;
    using Each = Flights::iterator;

    bool join(const Query& query, std::uint64_t key, const Asker& asker);
    void sendSoon(Each flight);
    void send(std::vector<Each> flights);
    void sendTo(std::size_t upstream, std::span<const Each> flights, std::vector<Each>& unsent);
    [[nodiscard]] bool addTo(DatagramBatch& batch, const std::shared_ptr<UpstreamSocket>& socket, Each flight);
    void receive(const std::weak_ptr<UpstreamSocket>& socket);
    void takeAnswer(UpstreamSocket& socket, View answer);
    [[nodiscard]] bool isAskedElsewhere(Each flight, View answer);
    void leave(UpstreamSocket& socket);
    [[nodiscard]] bool hasTriedAll(Each flight, SteadyTime now) const;
    [[nodiscard]] std::vector<WaitingAsker> remove(Each flight);
    void deliver(Each flight, View answer);
    void fail(Each flight);
    void noteSilence(const Flight& flight, SteadyTime now);
    void tick();

    Upstreams& m_upstreams;
    ForwardedQueries& m_queries;
    RandomNumbers m_random;
    ReceivedDatagrams m_received;
    DatagramBatch m_batch;
    Flights m_flights;                               ///< by their next attempts
    std::unordered_map<std::uint64_t, Each> m_byKey; ///< those that more askers may join
    std::size_t m_askers = 0;                        ///< of all flights
    std::vector<Each> m_unsent;
    UpstreamSockets m_sockets; ///< behind the flights: these end first
    Timer m_ticks;
};

} // namespace stillgate::dns
