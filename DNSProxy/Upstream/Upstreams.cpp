#include "Upstream/Upstreams.h"

#include <algorithm>

namespace stillgate::dns
{

void Upstreams::replace(std::vector<Endpoint> endpoints)
{
    ++m_generation;
    m_upstreams.clear();
    for (const auto& endpoint : endpoints) {
        if (m_upstreams.size() < most)
            m_upstreams.push_back({.endpoint = endpoint});
    }
}

std::optional<std::size_t> Upstreams::choose(Tried tried, SteadyTime now) const
{
    std::optional<std::size_t> failed;
    for (std::size_t index = 0; index < m_upstreams.size(); ++index) {
        if ((tried >> index & 1U) != 0)
            continue;
        if (m_upstreams[index].avoidedUntil <= now)
            return index;
        if (!failed)
            failed = index;
    }
    return failed;
}

void Upstreams::noteFailure(const Endpoint& endpoint, SteadyTime now)
{
    constexpr std::chrono::seconds avoided{30};
    if (auto* upstream = find(endpoint))
        upstream->avoidedUntil = now + avoided;
}

void Upstreams::noteAnswer(const Endpoint& endpoint)
{
    if (auto* upstream = find(endpoint))
        upstream->avoidedUntil = {};
}

Upstreams::Upstream* Upstreams::find(const Endpoint& endpoint)
{
    const auto found = std::ranges::find(m_upstreams, endpoint, &Upstream::endpoint);
    return found == m_upstreams.end() ? nullptr : &*found;
}

} // namespace stillgate::dns
