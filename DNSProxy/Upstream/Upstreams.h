#pragma once

#include "System/Datagrams.h"

#include <chrono>
#include <optional>

namespace stillgate::dns
{

using SteadyTime = std::chrono::steady_clock::time_point;

/// The resolvers that queries are forwarded to, and which of them answer.
class Upstreams
{
public:
    static constexpr std::size_t most = 16; ///< further ones are left out

    /// By their places in the list. Which ones a query has gone to already.
    using Tried = std::uint16_t;

    void replace(std::vector<Endpoint> endpoints);

    /// Another number after every replace(): places in the list and answers of before mean nothing any more.
    [[nodiscard]] std::uint64_t generation() const { return m_generation; }

    [[nodiscard]] const Endpoint& endpoint(std::size_t index) const { return m_upstreams[index].endpoint; }

    /// The first of those that weren't tried; one that has failed lately only after all others. Nothing if all were.
    [[nodiscard]] std::optional<std::size_t> choose(Tried tried, SteadyTime now) const;

    /// The endpoint may be none of these any more.
    void noteFailure(const Endpoint& endpoint, SteadyTime now);
    void noteAnswer(const Endpoint& endpoint);

private:
    struct Upstream
    {
        Endpoint endpoint;
        SteadyTime avoidedUntil{};
    };

    Upstream* find(const Endpoint& endpoint);

    std::vector<Upstream> m_upstreams;
    std::uint64_t m_generation = 0;
};

} // namespace stillgate::dns
