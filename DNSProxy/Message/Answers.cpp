#include "Message/Answers.h"

#include <array>

namespace stillgate::dns
{

namespace
{

constexpr std::uint16_t ownLargest = 1232; // bytes; the "DNS flag day 2020" recommendation

struct RecordCounts
{
    std::uint16_t answers = 0;
    std::uint16_t authorities = 0;
};

/// Header and question. The OPT record that appendEDNS() adds is counted.
void appendHead(Bytes& out, const Query& query, std::uint16_t flags, RecordCounts counts)
{
    const std::uint16_t copied = query.flags & (flag::recursionDesired | flag::checkingDisabled);
    append16(out, query.id);
    append16(out, flag::response | flag::recursionAvailable | copied | flags);
    append16(out, 1);
    append16(out, counts.answers);
    append16(out, counts.authorities);
    append16(out, query.edns ? 1 : 0);
    append(out, query.message.subspan(Header::size, query.question.end - Header::size));
}

std::uint16_t headerPart(ResponseCode code)
{
    return static_cast<std::uint16_t>(code) & flag::responseCode;
}

/// What stands behind the owner's name of the SOA record (RFC 1035, 3.3.13). The server is "localhost."; nobody reads
/// the mailbox, "nobody.invalid.".
constexpr auto soaBehindOwner = std::to_array<std::uint8_t>({
    0, type::soa, 0, recordClass::internet, 0, 0, 0, blockedSeconds, 0, 47,   // type, class, TTL, length
    9, 'l', 'o', 'c', 'a', 'l', 'h', 'o', 's', 't', 0,                        // MNAME
    6, 'n', 'o', 'b', 'o', 'd', 'y', 7, 'i', 'n', 'v', 'a', 'l', 'i', 'd', 0, // RNAME
    0, 0, 0, 1, 0, 0, 0x0e, 0x10, 0, 0, 0x04, 0xb0, 0, 0x09, 0x3a, 0x80,      // serial, refresh, retry, expire
    0, 0, 0, blockedSeconds,                                                  // minimum: what negative caches use
});
static_assert(soaBehindOwner.size() == 10 + 47);

} // namespace

void appendBlocked(Bytes& out, const Query& query, std::size_t zoneAt)
{
    appendHead(out, query, headerPart(ResponseCode::nameError), {.authorities = 1});
    append16(out, static_cast<std::uint16_t>(0xc000U | (Header::size + zoneAt)));
    append(out, soaBehindOwner);
    appendEDNS(out, query);
}

void appendEmpty(Bytes& out, const Query& query, ResponseCode code)
{
    appendHead(out, query, headerPart(code), {});
    appendEDNS(out, query, code);
}

void appendTruncated(Bytes& out, const Query& query, View answer)
{
    constexpr std::uint16_t kept = flag::authoritative | flag::authenticData | flag::responseCode;
    appendHead(out, query, static_cast<std::uint16_t>(number16(answer, Header::flags) & kept) | flag::truncated, {});
    appendEDNS(out, query);
}

void appendTexts(Bytes& out, const Query& query, const std::vector<std::string>& texts)
{
    appendHead(out, query, flag::authoritative, {.answers = 1});
    append16(out, 0xc000U | Header::size);
    append16(out, type::txt);
    append16(out, query.question.recordClass);
    append(out, std::array<std::uint8_t, 4>{}); // for no second: the next one sees it change
    std::size_t size = 0;
    for (const auto& text : texts)
        size += 1 + text.size();
    append16(out, static_cast<std::uint16_t>(size));
    for (const auto& text : texts) {
        out.push_back(static_cast<std::uint8_t>(text.size()));
        out.insert(out.end(), text.begin(), text.end());
    }
    appendEDNS(out, query);
}

void appendFault(Bytes& out, View message, ResponseCode code)
{
    const std::uint16_t copied =
        number16(message, Header::flags) & (flag::opcode | flag::recursionDesired | flag::checkingDisabled);
    append16(out, number16(message, 0));
    append16(out, flag::response | flag::recursionAvailable | copied | headerPart(code));
    append(out, std::array<std::uint8_t, 8>{}); // no question: it couldn't be read
}

void appendEDNS(Bytes& out, const Query& query, ResponseCode code)
{
    if (!query.edns)
        return;
    out.push_back(0);
    append16(out, type::opt);
    append16(out, ownLargest);
    append16(out, static_cast<std::uint16_t>(static_cast<std::uint16_t>(code) >> 4U << 8U)); // and version 0
    append16(out, query.edns->wantsDNSSEC ? 0x8000 : 0);
    append16(out, 0);
}

} // namespace stillgate::dns
