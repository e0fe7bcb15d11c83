#pragma once

#include "Backend/HTTPTransport.h"
#include "Platform/OneShotEvent.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace stillgate::test
{

/// A server in memory: a handler for each "METHOD /path?query". A request without one fails the test.
class FakeTransport final : public HTTPTransport
{
public:
    using Handler = std::function<Result<HTTPResponse>(const HTTPRequest&)>;

    static constexpr auto baseURL = "https://backend.test/v1";

    static HTTPResponse json(int status, std::string body) { return {status, "application/json", std::move(body)}; }

    /// The same answer every time.
    void answer(const std::string& request, Result<HTTPResponse> response)
    {
        handlers[request] = [response](const HTTPRequest&) { return response; };
    }

    [[nodiscard]] Task<Result<HTTPResponse>> send(HTTPRequest request, CancellationToken token) override
    {
        const auto name = request.method + " " + request.url.substr(std::string_view{baseURL}.size());
        EXPECT_TRUE(request.url.starts_with(baseURL)) << request.url;
        requests.push_back(request);
        if (const auto gate = held)
            co_await *gate;
        if (token.isCancelled())
            co_return failure(APIError::transport("Operation canceled"));
        const auto handler = handlers.find(name);
        if (handler == handlers.end()) {
            ADD_FAILURE() << "no answer for " << name;
            co_return failure(APIError::transport("unknown request"));
        }
        co_return handler->second(request);
    }

    [[nodiscard]] static std::string header(const HTTPRequest& request, const std::string& name)
    {
        for (const auto& [key, value] : request.headers) {
            if (key == name)
                return value;
        }
        return {};
    }

    /// How often a request of this method and path went out.
    [[nodiscard]] std::ptrdiff_t count(const std::string& method, const std::string& path) const
    {
        return std::ranges::count_if(
            requests, [&](const auto& request) { return request.method == method && request.url == baseURL + path; });
    }

    std::map<std::string, Handler> handlers;
    std::vector<HTTPRequest> requests;
    std::shared_ptr<OneShotEvent> held; ///< while there is one, answers wait for it
};

} // namespace stillgate::test
