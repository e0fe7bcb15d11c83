#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace stillgate::server
{

/// ASCII letters compare without regard to case, as in header names (RFC 9110, 5.1).
struct CaseInsensitiveLess
{
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

/// A request as it came, its body whole.
struct Request
{
    std::string method; ///< "GET"
    std::string path;   ///< percent-encoded, without the query
    std::string query;  ///< percent-encoded, without the question mark
    std::map<std::string, std::string, CaseInsensitiveLess> headers;
    std::string body;
    std::string address;      ///< of the peer: "192.0.2.7"
    bool isEncrypted = false; ///< came over TLS

    /// The header's value; empty if there is none.
    [[nodiscard]] const std::string& header(std::string_view name) const;
};

struct Response
{
    int status = 200;
    std::string contentType;
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;
};

/// Ends a request from wherever it is handled. Whatever it has changed in the database is undone.
class Refusal : public std::runtime_error
{
public:
    Refusal(int status, const std::string& reason)
        : std::runtime_error(reason)
        , m_status(status)
    {}

    [[nodiscard]] int status() const { return m_status; }

private:
    int m_status;
};

[[nodiscard]] inline Refusal notFound()
{
    return {404, "Not found"};
}

/// Whom an address counts for: itself, or for IPv6 its network of 64 bits, all of which one customer has.
[[nodiscard]] std::string networkOf(const std::string& address);

/// The text that a percent-encoded one stands for (RFC 3986, 2.1). Throws a Refusal if that isn't UTF-8, or holds a
/// NUL, which no database keeps.
[[nodiscard]] std::string percentDecoded(std::string_view encoded);

/// The values of a query or a form (application/x-www-form-urlencoded); of a repeated name the last.
[[nodiscard]] std::map<std::string, std::string> formValues(std::string_view encoded);

/// The value of a cookie (RFC 6265, 4.2); empty if there is none.
[[nodiscard]] std::string cookie(const Request& request, std::string_view name);

} // namespace stillgate::server
