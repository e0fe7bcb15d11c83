#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace stillgate
{

/// How a call of the backend can fail, beside an answer that doesn't decode.
class APIError
{
public:
    /// The request didn't reach the backend, or no answer came; `message` in the words of the network layer.
    static APIError transport(std::string message) { return {Kind::transport, 0, std::move(message)}; }

    /// The backend answered with an HTTP status (RFC 9110) that is no success.
    static APIError server(std::int64_t status, std::string message)
    {
        return {Kind::server, status, std::move(message)};
    }

    static APIError misconfiguredBaseURL() { return {Kind::misconfiguredBaseURL}; }

    static APIError invalidURL() { return {Kind::invalidURL}; }

    static APIError invalidResponse() { return {Kind::invalidResponse}; }

    /// The session has ended: the user has to sign in again.
    static APIError unauthorized() { return {Kind::unauthorized}; }

    /// The HTTP status with which the backend answered; 0 if it didn't.
    [[nodiscard]] std::int64_t status() const { return m_status; }

    /// In the words of the backend, or of the network layer; empty if neither had any.
    [[nodiscard]] const std::string& message() const { return m_message; }

    /// What screens show.
    [[nodiscard]] std::string errorDescription() const;

    bool operator==(const APIError&) const = default;

private:
    enum class Kind { transport, server, misconfiguredBaseURL, invalidURL, invalidResponse, unauthorized };

    APIError(Kind kind, std::int64_t status = 0, std::string message = {})
        : m_kind(kind)
        , m_status(status)
        , m_message(std::move(message))
    {}

    Kind m_kind;
    std::int64_t m_status;
    std::string m_message;
};

} // namespace stillgate
