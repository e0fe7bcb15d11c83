#pragma once

#include "Names/NameKey.h"

#include <optional>
#include <span>

namespace stillgate::dns
{

/// Names that are blocked, with everything below them. Holds their hashes alone, 11 bytes a name.
class DomainSet
{
public:
    /// Room for so many names; insert() takes no more.
    DomainSet(const NameKey& key, std::size_t capacity);

    void insert(const DomainName& name) { insertHash(m_key.hash(name.wire())); }

    /// The key's hashes of names.
    void insert(std::span<const std::uint64_t> hashes);

    [[nodiscard]] std::size_t size() const { return m_size; }

    /// Where in the name's wire form the name begins that it is blocked by, itself or one above it; nothing if it
    /// isn't.
    [[nodiscard]] std::optional<std::size_t> blockedPart(const DomainName& name) const;

private:
    void insertHash(std::uint64_t hash);
    [[nodiscard]] bool contains(std::uint64_t hash) const;
    [[nodiscard]] std::size_t placeOf(std::uint64_t hash) const;
    [[nodiscard]] std::size_t behind(std::size_t place) const;

    NameKey m_key;
    std::vector<std::uint64_t> m_places; ///< open addressing, linear probing; 0 is a free place
    std::size_t m_size = 0;
};

} // namespace stillgate::dns
