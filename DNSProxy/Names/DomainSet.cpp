#include "Names/DomainSet.h"

#include <algorithm>
#include <cassert>

namespace stillgate::dns
{

namespace
{

/// The hash 0 marks a free place, so a name that has it goes by another.
std::uint64_t stored(std::uint64_t hash)
{
    return std::max<std::uint64_t>(hash, 1);
}

/// Three of four places taken: the search for a name that isn't there ends within one or two cache lines.
std::size_t placesFor(std::size_t capacity)
{
    return capacity + capacity / 3 + 2;
}

} // namespace

DomainSet::DomainSet(const NameKey& key, std::size_t capacity)
    : m_key(key)
    , m_places(placesFor(capacity))
{}

void DomainSet::insert(std::span<const std::uint64_t> hashes)
{
    // Every place is elsewhere in memory. Asked for early, they come while others are filled.
    constexpr std::size_t ahead = 16;
    for (std::size_t index = 0; index < hashes.size(); ++index) {
        if (index + ahead < hashes.size())
            __builtin_prefetch(&m_places[placeOf(hashes[index + ahead])], 1);
        insertHash(hashes[index]);
    }
}

void DomainSet::insertHash(std::uint64_t hash)
{
    const auto wanted = stored(hash);
    auto place = placeOf(wanted);
    while (m_places[place] != 0 && m_places[place] != wanted)
        place = behind(place);
    if (m_places[place] == wanted)
        return;
    assert(m_size + 1 < m_places.size()); // a search ends at a free place
    m_places[place] = wanted;
    ++m_size;
}

std::optional<std::size_t> DomainSet::blockedPart(const DomainName& name) const
{
    const auto wire = name.wire();
    for (std::size_t at = 0; at + 1 < wire.size(); at = name.parent(at)) {
        if (contains(m_key.hash(wire.subspan(at))))
            return at;
    }
    return std::nullopt;
}

bool DomainSet::contains(std::uint64_t hash) const
{
    const auto wanted = stored(hash);
    auto place = placeOf(wanted);
    while (m_places[place] != 0 && m_places[place] != wanted)
        place = behind(place);
    return m_places[place] == wanted;
}

/// Scales the hash to the number of places: a multiplication where a remainder would be a division.
std::size_t DomainSet::placeOf(std::uint64_t hash) const
{
    __extension__ using Wide = unsigned __int128;
    return static_cast<std::size_t>(static_cast<Wide>(hash) * m_places.size() >> 64U);
}

std::size_t DomainSet::behind(std::size_t place) const
{
    return place + 1 == m_places.size() ? 0 : place + 1;
}

} // namespace stillgate::dns
