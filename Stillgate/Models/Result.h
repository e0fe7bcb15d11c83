#pragma once

#include "Models/APIError.h"

#include <expected>
#include <string>
#include <variant>

namespace stillgate
{

/// A text that is not the JSON of the wanted record.
struct DecodingFailure
{
    std::string path;    ///< where, from the record's name on: "BlockRule[3].excludedDomains"
    std::string problem; ///< what: "required, but missing"

    bool operator==(const DecodingFailure&) const = default;
};

/// A record that can't be written as JSON: it holds a text that isn't UTF-8.
struct EncodingFailure
{
    std::string problem;

    bool operator==(const EncodingFailure&) const = default;
};

/// A file operation or a child process that the operating system refused.
struct SystemFailure
{
    std::string action; ///< what was tried: "open /etc/hosts"
    int code = 0;       ///< errno; 0 where the system gave none

    bool operator==(const SystemFailure&) const = default;
};

/// Why an operation failed.
class Error
{
public:
    using Cause = std::variant<APIError, DecodingFailure, EncodingFailure, SystemFailure>;

    template <class Failure>
        requires std::constructible_from<Cause, Failure>
    Error(Failure failure) // NOLINT(google-explicit-constructor): a failure is returned where an Error is asked for
        : m_cause(std::move(failure))
    {}

    /// One line in words; for an APIError, the words that screens show.
    [[nodiscard]] std::string description() const;

    [[nodiscard]] bool is(const APIError& error) const;

    /// Null for every other cause.
    [[nodiscard]] const APIError* apiError() const { return std::get_if<APIError>(&m_cause); }

    /// The errno of a SystemFailure; 0 for every other cause.
    [[nodiscard]] int systemCode() const;

    bool operator==(const Error&) const = default;

private:
    Cause m_cause;
};

template <class T>
using Result = std::expected<T, Error>;

/// The failure of an operation, from one of the causes of an Error: `return failure(SystemFailure{...})`.
template <class Failure>
[[nodiscard]] std::unexpected<Error> failure(Failure cause)
{
    return std::unexpected<Error>{Error{std::move(cause)}};
}

} // namespace stillgate
