#pragma once

#include "Message/Header.h"
#include "Message/Records.h"

#include <expected>

namespace stillgate::dns
{

/// What a query says by EDNS (RFC 6891).
struct EDNS
{
    std::uint16_t largestAnswer = 512; ///< bytes, over UDP
    std::uint8_t version = 0;
    bool wantsDNSSEC = false;
    bool hasOwnOptions = false; ///< that may change the answer: any but a cookie, a padding and a keep-alive
};

/// A query and what its answer depends on. It refers to its message.
struct Query
{
    View message;
    Question question;
    std::uint16_t id = 0;
    std::uint16_t flags = 0;
    std::optional<EDNS> edns;
    bool isSigned = false; ///< by TSIG (RFC 8945): not a byte of the answer may be changed

    /// Why there is no query: what to answer, or nothing for silence.
    using Fault = std::optional<ResponseCode>;

    [[nodiscard]] static std::expected<Query, Fault> parse(View message);

    /// The same query without the options of EDNS: what a shared answer is made for.
    [[nodiscard]] Bytes withoutOptions() const;

    /// How large the answer may be over UDP.
    [[nodiscard]] std::size_t largestAnswer() const;

    /// Whether somebody else's answer to the same question is one to this query.
    [[nodiscard]] bool isShareable() const { return !isSigned && !(edns && edns->hasOwnOptions); }

    /// The bits of a query that change its answer, as the part of a key.
    [[nodiscard]] std::uint8_t variant() const;
};

} // namespace stillgate::dns
