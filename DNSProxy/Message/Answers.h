#pragma once

#include "Message/Query.h"

#include <string>

namespace stillgate::dns
{

/// For how many seconds whoever asks may remember that a name is blocked. Few: a block that ends has ended then.
inline constexpr std::uint32_t blockedSeconds = 10;

/// The answers that this program gives by itself. Each is appended to `out`.

/// NXDOMAIN, with the SOA record that allows to remember it (RFC 2308, 5). `zoneAt` is where, in the question's name,
/// the blocked name begins.
void appendBlocked(Bytes& out, const Query& query, std::size_t zoneAt);

/// Nothing but the question and the code.
void appendEmpty(Bytes& out, const Query& query, ResponseCode code);

/// That there is more than goes into one datagram: whoever reads it asks again over TCP.
void appendTruncated(Bytes& out, const Query& query, View answer);

/// One TXT record of these texts, each 255 bytes at most.
void appendTexts(Bytes& out, const Query& query, const std::vector<std::string>& texts);

/// To a message that is no query, but has a header.
void appendFault(Bytes& out, View message, ResponseCode code);

/// The size of the record that appendEDNS() adds, in bytes.
inline constexpr std::size_t ednsSize = 11;

/// The OPT record of an answer to a query that has one (RFC 6891, 6.1.1), of a resolver that takes what fits into a
/// frame of any network.
void appendEDNS(Bytes& out, const Query& query, ResponseCode code = ResponseCode::noError);

} // namespace stillgate::dns
