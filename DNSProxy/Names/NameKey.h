#pragma once

#include "Message/DomainName.h"

#include <array>
#include <bit>
#include <sodium.h>

namespace stillgate::dns
{

/// What names are hashed with: SipHash-2-4, to 64 bits.
///
/// Of a million blocked names and a name that isn't blocked, a hash is the same in 1 of 2^44 cases; who asks a thousand
/// million different names meets one with a probability of 1 in 17,000. THREAT: nobody can look for a name whose hash
/// is another's, to have a site blocked for everybody, without the key, which no other user of the machine can read.
class NameKey
{
public:
    using Value = std::array<unsigned char, crypto_shorthash_KEYBYTES>;

    explicit NameKey(const Value& value)
        : m_value(value)
    {}

    [[nodiscard]] static NameKey random()
    {
        Value value{};
        crypto_shorthash_keygen(value.data());
        return NameKey{value};
    }

    [[nodiscard]] const Value& value() const { return m_value; }

    /// Of a name, or of the part behind one of its dots, as on the wire.
    [[nodiscard]] std::uint64_t hash(View bytes) const
    {
        std::array<unsigned char, crypto_shorthash_BYTES> hash{};
        crypto_shorthash(hash.data(), bytes.data(), bytes.size(), m_value.data());
        return std::bit_cast<std::uint64_t>(hash);
    }

private:
    Value m_value;
};

} // namespace stillgate::dns
