#pragma once

#include "Message/Bytes.h"

#include <optional>
#include <string>

namespace stillgate::test
{

using dns::Bytes;
using dns::View;

/// A query, as a test writes it.
struct Ask
{
    std::string name;
    std::uint16_t type = 1;
    std::uint16_t recordClass = 1;
    std::uint16_t id = 0x1234;
    std::uint16_t flags = 0x0100;           ///< recursion desired
    std::optional<std::uint16_t> edns = {}; ///< the largest answer
    std::uint32_t ednsFlags = 0;            ///< 0x8000 is DO; version in bits 16 to 23
    Bytes ednsOptions = {};
};

[[nodiscard]] Bytes bytesOf(const Ask& ask);

struct PacketRecord
{
    char section = 'n'; ///< 'n' answer, 'u' authority, 'd' additional
    std::string name;
    std::uint16_t type = 1;
    std::uint32_t ttl = 300;
    Bytes data = {192, 0, 2, 1};
    std::uint16_t recordClass = 1;
};

/// A message, taken apart by another reader than the program's own.
struct Packet
{
    std::uint16_t id = 0;
    std::uint16_t flags = 0;
    std::string name; ///< of the question, its case kept
    std::uint16_t type = 0;
    std::uint16_t recordClass = 0;
    std::vector<PacketRecord> records;

    /// Throws std::exception where the bytes are no message.
    static Packet from(View bytes);

    [[nodiscard]] int code() const { return flags & 0xf; }

    [[nodiscard]] bool isTruncated() const { return (flags & 0x0200) != 0; }

    [[nodiscard]] const PacketRecord* find(std::uint16_t wanted) const;

    [[nodiscard]] std::size_t count(char section) const;
};

/// An answer to the query with these records, their names uncompressed.
[[nodiscard]] Bytes answerTo(View query, const std::vector<PacketRecord>& records, std::uint16_t flags = 0x8180);

/// On the wire.
[[nodiscard]] Bytes nameBytes(const std::string& name);

/// Data of an SOA record with this minimum.
[[nodiscard]] Bytes soaData(std::uint32_t minimum);

} // namespace stillgate::test
