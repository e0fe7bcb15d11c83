#pragma once

#include "Backend/HTTPTransport.h"
#include "Backend/SessionTokens.h"
#include "Models/JSONCoding.h"
#include "Platform/NotificationCenter.h"
#include "Platform/OneShotEvent.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace stillgate
{

/// What every exchange with the backend passes through: it builds the request, classifies the answer, and repairs an
/// expired session with one refresh and one retry.
///
/// However many requests notice at once that the access token has expired, one refresh goes out; the others wait for
/// it, and who comes late takes what it brought. What can't be repaired wipes the session, if it is still the same one.
class RequestPipeline
{
public:
    /// `baseURL` as by resolveBaseURL.
    RequestPipeline(
        std::string baseURL, HTTPTransport& transport, KeychainService& store, NotificationCenter& notifications);

    enum class Authentication { bearer, none };

    struct Call
    {
        std::string method;
        std::string path; ///< begins with a slash; may carry a query
        std::optional<Result<std::string>> body = {};
        Authentication authentication = Authentication::bearer;
        CancellationToken token = {};
    };

    /// The record that a successful answer holds. Errors: APIError, and DecodingFailure as it stands.
    template <class T>
    [[nodiscard]] Task<Result<T>> request(Call call)
    {
        const auto answer = std::make_shared<T>();
        const auto done = co_await perform(std::move(call), [answer](const std::string& body) -> Result<void> {
            auto decoded = JSONDecoder{DateForm::iso8601}.decode<T>(body);
            if (!decoded)
                return std::unexpected{decoded.error()};
            *answer = std::move(*decoded);
            return {};
        });
        if (!done)
            co_return std::unexpected{done.error()};
        co_return std::move(*answer);
    }

    template <class Body>
    [[nodiscard]] static Result<std::string> encoded(const Body& body)
    {
        return JSONEncoder{DateForm::iso8601}.encode(body);
    }

    [[nodiscard]] SessionTokens& tokens() { return m_tokens; }

    [[nodiscard]] const SessionTokens& tokens() const { return m_tokens; }

private:
    using Take = std::function<Result<void>(const std::string& body)>;

    [[nodiscard]] Task<Result<void>> perform(Call call, Take take);
    [[nodiscard]] Task<Result<void>> repair(
        HTTPRequest request, std::uint64_t session, CancellationToken token, Take take);
    [[nodiscard]] Task<Result<void>> refreshAccessToken();
    [[nodiscard]] Task<Result<void>> refreshOnce();
    [[nodiscard]] Result<HTTPRequest> build(const Call& call) const;
    [[nodiscard]] bool carriesCurrentToken(const HTTPRequest& request) const;
    void authorize(HTTPRequest& request) const;

    std::string m_baseURL;
    HTTPTransport& m_transport;
    SessionTokens m_tokens;
    NotificationCenter& m_notifications;
    std::shared_ptr<OneShotEvent> m_refreshing; ///< happens when the refresh in flight has ended; none if there is none
};

} // namespace stillgate
