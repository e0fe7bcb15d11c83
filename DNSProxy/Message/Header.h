#pragma once

#include "Message/Bytes.h"

namespace stillgate::dns
{

/// Bytes; over TCP its length is a number of 16 bits (RFC 1035, 4.2.2).
inline constexpr std::size_t largestMessage = 65'535;

/// The header of a message (RFC 1035, 4.1.1): six numbers of 16 bits.
struct Header
{
    static constexpr std::size_t size = 12;

    static constexpr std::size_t flags = 2; ///< where what stands
    static constexpr std::size_t questionCount = 4;
    static constexpr std::size_t answerCount = 6;
    static constexpr std::size_t authorityCount = 8;
    static constexpr std::size_t additionalCount = 10;
};

namespace flag
{

inline constexpr std::uint16_t response = 0x8000;
inline constexpr std::uint16_t opcode = 0x7800;
inline constexpr std::uint16_t authoritative = 0x0400;
inline constexpr std::uint16_t truncated = 0x0200;
inline constexpr std::uint16_t recursionDesired = 0x0100;
inline constexpr std::uint16_t recursionAvailable = 0x0080;
inline constexpr std::uint16_t authenticData = 0x0020;
inline constexpr std::uint16_t checkingDisabled = 0x0010;
inline constexpr std::uint16_t responseCode = 0x000f;

} // namespace flag

/// How a query went (RFC 1035, 4.1.1). Those above 15 are told by EDNS (RFC 6891, 6.1.3).
enum class ResponseCode : std::uint16_t {
    noError = 0,
    formatError = 1,
    serverFailure = 2,
    nameError = 3,
    notImplemented = 4,
    refused = 5,
    badVersion = 16,
};

/// The types that mean something to this program (IANA's registry); all others only pass.
namespace type
{

inline constexpr std::uint16_t cname = 5;
inline constexpr std::uint16_t soa = 6;
inline constexpr std::uint16_t txt = 16;
inline constexpr std::uint16_t dname = 39;
inline constexpr std::uint16_t opt = 41;
inline constexpr std::uint16_t svcb = 64;
inline constexpr std::uint16_t https = 65;
inline constexpr std::uint16_t tsig = 250;
inline constexpr std::uint16_t ixfr = 251;
inline constexpr std::uint16_t axfr = 252;
inline constexpr std::uint16_t any = 255;

} // namespace type

namespace recordClass
{

inline constexpr std::uint16_t internet = 1;
inline constexpr std::uint16_t chaos = 3;

} // namespace recordClass

} // namespace stillgate::dns
