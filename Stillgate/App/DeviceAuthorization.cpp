#include "App/DeviceAuthorization.h"

#include "Localization/L.h"
#include "Platform/WebAddress.h"

#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

constexpr auto browserDelay = 2s; ///< the user reads what is going to happen before it does

// The backend's numbers are bounded, so that no timer overflows.
constexpr std::chrono::seconds shortestInterval = 1s;
constexpr std::chrono::seconds longestInterval = 1h;
constexpr std::chrono::seconds longestLife = 24h;

std::chrono::seconds intervalOf(const DeviceCodeResponse& code)
{
    return std::clamp(std::chrono::seconds{code.interval}, shortestInterval, longestInterval);
}

std::chrono::seconds lifeOf(const DeviceCodeResponse& code)
{
    return std::clamp(std::chrono::seconds{code.expiresIn}, 0s, longestLife);
}

} // namespace

DeviceAuthorization::DeviceAuthorization(
    AppState& state, Backend& backend, OpenURL openURL, const Clock& clock, Scheduler& scheduler, Log& log)
    : m_state(state)
    , m_backend(backend)
    , m_openURL(std::move(openURL))
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_log(log)
{}

void DeviceAuthorization::resumeOrStartDeviceAuth()
{
    if (isExpired || !deviceCode.value()) {
        loadDeviceCode();
        return;
    }
    deviceAuthErrorMessage = std::nullopt;
    beginPolling();
    runDetached(pollDeviceAuthorization());
}

void DeviceAuthorization::loadDeviceCode()
{
    if (!isRequestingDeviceCode)
        runDetached(requestCode());
}

Task<> DeviceAuthorization::requestCode()
{
    stopPolling();
    isRequestingDeviceCode = true;
    isExpired = false;
    deviceAuthErrorMessage = std::nullopt;
    deviceCode = std::nullopt;
    m_request = {};
    const auto request = m_request.token();

    const auto code = co_await m_backend.requestDeviceCode();
    if (request.isCancelled())
        co_return;
    isRequestingDeviceCode = false;
    if (!code) {
        fail(code.error().description());
        co_return;
    }
    deviceCode = *code;
    m_deviceCodeExpiresAt = m_clock.now() + lifeOf(*code);
    beginPolling();
    runDetached(openBrowserSoon(*code));
    co_await pollDeviceAuthorization();
}

Task<> DeviceAuthorization::openBrowserSoon(DeviceCodeResponse code)
{
    co_await waitFor(&m_scheduler, browserDelay);
    if (!m_state.isAuthenticated && !isCompleting)
        openBrowserFor(code);
}

void DeviceAuthorization::openBrowser()
{
    if (deviceCode.value())
        openBrowserFor(*deviceCode.value());
}

void DeviceAuthorization::openBrowserFor(const DeviceCodeResponse& code)
{
    if (const auto page = approvalPage(code))
        m_openURL(*page);
    else
        deviceAuthErrorMessage = L.localized("errors.generic");
}

std::optional<std::string> DeviceAuthorization::approvalPage(const DeviceCodeResponse& code)
{
    if (const auto complete = webAddress(code.verificationUrlComplete.value_or("")))
        return complete;
    const auto plain = webAddress(code.verificationUrl);
    if (!plain)
        return std::nullopt;
    QUrl page{QString::fromStdString(*plain)};
    QUrlQuery query{page};
    // Encoded by us: a query leaves a plus sign as it is, and servers read it as a blank.
    query.addQueryItem("user_code", QString::fromUtf8(QUrl::toPercentEncoding(QString::fromStdString(code.userCode))));
    page.setQuery(query);
    return page.toEncoded().toStdString();
}

void DeviceAuthorization::beginPolling()
{
    stopPolling();
    m_pollTimer =
        m_scheduler.repeating(intervalOf(*deviceCode.value()), [this] { runDetached(pollDeviceAuthorization()); });
}

void DeviceAuthorization::stopPolling()
{
    m_pollTimer.reset();
    m_isPollingDeviceCode = false;
}

Task<> DeviceAuthorization::pollDeviceAuthorization()
{
    if (!deviceCode.value() || m_isPollingDeviceCode)
        co_return;
    if (m_clock.now() >= m_deviceCodeExpiresAt) {
        expire();
        co_return;
    }
    m_isPollingDeviceCode = true;
    const auto polled = deviceCode.value()->deviceCode;
    const auto answer = co_await m_backend.pollDeviceCode(polled);
    const bool isApproved = answer && answer->status == "approved";
    if (isApproved && answer->accessToken && answer->refreshToken && answer->user) {
        co_await completeDeviceAuthorization(*answer);
        co_return;
    }
    const bool isCurrent = deviceCode.value() && deviceCode.value()->deviceCode == polled;
    if (!isCurrent)
        co_return; // of a code that has been given up for a new one
    m_isPollingDeviceCode = false;
    if (!answer) {
        stopPolling();
        takePollFailure(answer.error());
    } else if (answer->status == "denied") {
        fail(L.localized("errors.permissionDenied"));
    } else if (isApproved) {
        fail(L.localized("errors.generic")); // without what a session needs
    }
}

void DeviceAuthorization::takePollFailure(const Error& error)
{
    const auto* apiError = error.apiError();
    const auto status = apiError != nullptr ? apiError->status() : 0;
    if (status == 403)
        fail(apiError->message());
    else if (status == 404)
        expire(); // the backend knows the code no more
    else
        fail(error.description());
}

Task<> DeviceAuthorization::completeDeviceAuthorization(DeviceCodePollResponse answer)
{
    stopPolling();
    m_request.cancel(); // of a newer code, which nobody needs any more
    isRequestingDeviceCode = false;
    deviceCode = std::nullopt;
    m_backend.setTokens(*answer.accessToken, *answer.refreshToken);
    m_state.currentUser = answer.user;
    m_log.write("[Stillgate] Signed in");
    isCompleting = true;
    co_await m_state.bootstrap();
    if (!m_state.isAuthenticated && !m_state.isBehindAGate())
        fail(L.localized("errors.generic"));
    isCompleting = false;
}

void DeviceAuthorization::fail(std::string message)
{
    stopPolling();
    deviceAuthErrorMessage = message.empty() ? L.localized("errors.generic") : std::move(message);
}

void DeviceAuthorization::expire()
{
    stopPolling();
    isExpired = true;
    deviceAuthErrorMessage = std::nullopt;
}

} // namespace stillgate
