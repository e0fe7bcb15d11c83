#include "Backend/RequestPipeline.h"

#include "Models/APIBodies.h"
#include "Models/Session.h"

#include <QUrl>

#include <algorithm>

namespace stillgate
{

namespace
{

bool isSuccess(const HTTPResponse& response)
{
    return response.status >= 200 && response.status <= 299;
}

/// An answer that doesn't say what it is passes.
bool isJSON(const HTTPResponse& response)
{
    auto type = QByteArray::fromStdString(response.contentType.value_or("application/json"));
    return type.toLower().contains("application/json");
}

std::string bearer(std::string_view token)
{
    return "Bearer " + std::string{token};
}

std::string messageOf(const HTTPResponse& response)
{
    const auto body = JSONDecoder{DateForm::iso8601}.decode<ErrorResponse>(response.body);
    return body ? body->error : "Unknown error";
}

} // namespace

RequestPipeline::RequestPipeline(
    std::string baseURL, HTTPTransport& transport, KeychainService& store, NotificationCenter& notifications)
    : m_baseURL(std::move(baseURL))
    , m_transport(transport)
    , m_tokens(store)
    , m_notifications(notifications)
{}

Task<Result<void>> RequestPipeline::perform(Call call, Take take)
{
    const auto request = build(call);
    if (!request)
        co_return std::unexpected{request.error()};
    const auto session = m_tokens.endedSessions();
    const auto response = co_await m_transport.send(*request, call.token);
    if (!response)
        co_return std::unexpected{response.error()};
    if (!isJSON(*response))
        co_return failure(APIError::invalidResponse());
    if (isSuccess(*response))
        co_return take(response->body);
    const bool canBeRepaired =
        response->status == 401 && call.authentication == Authentication::bearer && m_tokens.refresh().has_value();
    if (canBeRepaired)
        co_return co_await repair(*request, session, call.token, std::move(take));
    co_return failure(APIError::server(response->status, messageOf(*response)));
}

/// One refresh and one retry, which is not repaired again.
Task<Result<void>> RequestPipeline::repair(
    HTTPRequest request, std::uint64_t session, CancellationToken token, Take take)
{
    Result<void> refreshed;
    if (carriesCurrentToken(request))
        refreshed = co_await refreshAccessToken();
    const bool isAnothersSession = m_tokens.endedSessions() != session && m_tokens.access();
    if (refreshed && !isAnothersSession) {
        authorize(request);
        const auto response = co_await m_transport.send(std::move(request), token);
        if (response && isSuccess(*response) && take(response->body))
            co_return Result<void>{};
        if (token.isCancelled()) // says nothing about the session
            co_return failure(APIError::transport("Operation canceled"));
    }
    if (m_tokens.endedSessions() == session)
        m_tokens.clear();
    co_return failure(APIError::unauthorized());
}

Task<Result<void>> RequestPipeline::refreshAccessToken()
{
    if (const auto inFlight = m_refreshing) {
        co_await *inFlight;
        co_return Result<void>{}; // also when it failed: the retry finds that out
    }
    m_refreshing = std::make_shared<OneShotEvent>();
    const auto refreshed = co_await refreshOnce();
    std::exchange(m_refreshing, nullptr)->happen();
    co_return refreshed;
}

Task<Result<void>> RequestPipeline::refreshOnce()
{
    const auto refreshToken = m_tokens.refresh();
    if (!refreshToken) {
        m_tokens.clear();
        co_return failure(APIError::unauthorized());
    }
    const auto session = m_tokens.endedSessions();
    const auto pair = co_await request<TokenRefreshResponse>({
        .method = "POST",
        .path = "/auth/refresh",
        .body = encoded(RefreshTokenBody{std::string{*refreshToken}}),
        .authentication = Authentication::none,
    });
    if (m_tokens.endedSessions() != session) // signed out meanwhile: a pair that still comes is nobody's
        co_return failure(APIError::unauthorized());
    if (!pair) {
        m_tokens.clear();
        m_notifications.post(sgForceLogout);
        co_return failure(APIError::unauthorized());
    }
    m_tokens.set(pair->accessToken, pair->refreshToken);
    co_return Result<void>{};
}

Result<HTTPRequest> RequestPipeline::build(const Call& call) const
{
    HTTPRequest request{
        .method = call.method,
        .url = m_baseURL + call.path,
        .headers = {{"Content-Type", "application/json"}, {"Origin", "stillgate://macos"}},
    };
    if (!QUrl::fromEncoded(QByteArray::fromStdString(request.url), QUrl::StrictMode).isValid())
        return failure(APIError::invalidURL());
    if (call.body && !*call.body)
        return std::unexpected{call.body->error()};
    if (call.body)
        request.body = **call.body;
    if (call.authentication == Authentication::bearer)
        authorize(request);
    return request;
}

bool RequestPipeline::carriesCurrentToken(const HTTPRequest& request) const
{
    const auto access = m_tokens.access();
    if (!access)
        return true;
    const std::pair<std::string, std::string> current{"Authorization", bearer(*access)};
    return std::ranges::find(request.headers, current) != request.headers.end();
}

/// The token that is current now; without one, the header stays as it is.
void RequestPipeline::authorize(HTTPRequest& request) const
{
    const auto access = m_tokens.access();
    if (!access)
        return;
    std::erase_if(request.headers, [](const auto& header) { return header.first == "Authorization"; });
    request.headers.emplace_back("Authorization", bearer(*access));
}

} // namespace stillgate
