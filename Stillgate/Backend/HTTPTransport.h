#pragma once

#include "Models/Result.h"
#include "Platform/Cancellation.h"
#include "Platform/Task.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace stillgate
{

struct HTTPRequest
{
    std::string method;
    std::string url;
    std::vector<std::pair<std::string, std::string>> headers;
    std::optional<std::string> body;
};

struct HTTPResponse
{
    int status = 0;
    std::optional<std::string> contentType;
    std::string body;
};

/// Sends requests to the backend (HTTP, RFC 9110).
class HTTPTransport
{
public:
    virtual ~HTTPTransport() = default;

    /// The answer, whatever its status. A request goes out once at most: nothing repeats it, and no redirect is
    /// followed. Errors: APIError::transport, also when the server isn't trusted and when it is cancelled.
    [[nodiscard]] virtual Task<Result<HTTPResponse>> send(HTTPRequest request, CancellationToken token) = 0;
};

} // namespace stillgate
