#pragma once

#include "Message/Bytes.h"

#include <array>
#include <optional>
#include <string_view>

namespace stillgate::dns
{

/// A domain name as it stands on the wire (RFC 1035, 3.1), in lower case: labels with their lengths ahead, and the
/// empty label of the root at the end.
class DomainName
{
public:
    static constexpr std::size_t longestName = 255; ///< with all lengths
    static constexpr std::size_t longestLabel = 63;

    /// The root.
    DomainName() { m_wire[0] = 0; }

    /// A name as people write it, in any case, with or without the dot at its end. Nothing if it is none: a label may
    /// have letters, digits, hyphens and underscores. The root is none either.
    [[nodiscard]] static std::optional<DomainName> fromText(std::string_view text);

    /// Reads the name that begins there, compressed or not (RFC 1035, 4.1.4), and gives where it ends. Nothing if it
    /// reaches past the message, is too long, or has a pointer that doesn't lead backwards: that way none leads in a
    /// circle.
    [[nodiscard]] std::optional<std::size_t> read(View message, std::size_t at);

    [[nodiscard]] View wire() const { return {m_wire.data(), m_size}; }

    /// Whether it is a top-level name, such as "com".
    [[nodiscard]] bool isSingleLabel() const { return parent(0) + 1 == m_size; }

    /// Where the first label of the parent begins; `at` is where one begins that isn't the root's.
    [[nodiscard]] std::size_t parent(std::size_t at) const { return at + m_wire[at] + 1; }

    bool operator==(const DomainName& other) const;

private:
    bool appendLabel(View label);

    std::array<std::uint8_t, longestName>
        m_wire; ///< behind its size it has no value: filling it up would take longer than reading a name
    std::size_t m_size = 1;
};

/// Letters to lower case and nothing else. A length ahead of a label, 63 at most, is no letter.
[[nodiscard]] constexpr std::uint8_t lowered(std::uint8_t character)
{
    return character >= 'A' && character <= 'Z' ? character | 0x20U : character;
}

} // namespace stillgate::dns
