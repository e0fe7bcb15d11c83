#pragma once

#include "Models/Result.h"

#include <expected>
#include <string>

namespace stillgate::guard
{

/// Why a call isn't carried out: the name of its D-Bus error, and a sentence.
struct Refusal
{
    enum class Kind {
        accessDenied,    ///< nobody with the right to it has consented
        invalidArgument, ///< the caller's bytes aren't what they have to be
        busy,            ///< too many of the caller's calls wait already
        failed,          ///< the system refused; what was in force still is, or is again at the next call
    };

    Kind kind = Kind::failed;
    std::string sentence;
};

template <class T = void>
using Answer = std::expected<T, Refusal>;

[[nodiscard]] inline std::unexpected<Refusal> refusal(Refusal::Kind kind, std::string sentence)
{
    return std::unexpected{Refusal{kind, std::move(sentence)}};
}

[[nodiscard]] inline std::unexpected<Refusal> refusal(const Error& error)
{
    return refusal(Refusal::Kind::failed, error.description());
}

} // namespace stillgate::guard
