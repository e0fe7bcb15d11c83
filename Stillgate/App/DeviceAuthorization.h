#pragma once

#include "App/AppState.h"
#include "Platform/Clock.h"

#include <functional>

namespace stillgate
{

/// Signing in without a password (the device authorization grant of RFC 8628): the backend gives a code, the user
/// approves it in the browser, and a poll brings the tokens. Main thread only.
///
/// It outlives the screen that shows it: a poll that brings the tokens counts also when its window has been closed,
/// since the backend gives them once.
class DeviceAuthorization
{
public:
    using OpenURL = std::function<void(const std::string& url)>;

    /// `openURL` hands an address to the user's browser.
    DeviceAuthorization(
        AppState& state, Backend& backend, OpenURL openURL, const Clock& clock, Scheduler& scheduler, Log& log);

    /// The current code; nothing before the first one, and after it has been approved.
    QProperty<std::optional<DeviceCodeResponse>> deviceCode;
    /// The code ran out; a new one has to be asked for.
    QProperty<bool> isExpired{false};
    QProperty<bool> isRequestingDeviceCode{false};
    /// The user has approved, and the session is coming up.
    QProperty<bool> isCompleting{false};
    /// Why it doesn't go on, in the user's language.
    QProperty<std::optional<std::string>> deviceAuthErrorMessage;

    /// For a screen that appears: goes on with a code that lives, or asks for a first one.
    void resumeOrStartDeviceAuth();

    /// Asks for a new code, and opens the browser two seconds after it has come. Does nothing while a request is on its
    /// way.
    void loadDeviceCode();

    /// For a screen that disappears. A poll that is on its way still counts.
    void stopPolling();

    /// Opens the approval page of the current code.
    void openBrowser();

    /// The address of a code's approval page; nothing if the backend gave none that can be read.
    [[nodiscard]] static std::optional<std::string> approvalPage(const DeviceCodeResponse& code);

private:
    [[nodiscard]] Task<> requestCode();
    [[nodiscard]] Task<> openBrowserSoon(DeviceCodeResponse code);
    void openBrowserFor(const DeviceCodeResponse& code);

    void beginPolling();
    [[nodiscard]] Task<> pollDeviceAuthorization();
    void takePollFailure(const Error& error);
    /// The answer has both tokens and the user.
    [[nodiscard]] Task<> completeDeviceAuthorization(DeviceCodePollResponse answer);

    void fail(std::string message);
    void expire();

    AppState& m_state;
    Backend& m_backend;
    OpenURL m_openURL;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    Log& m_log;

    CancellationSource m_request; ///< of the last request for a code
    Date m_deviceCodeExpiresAt;   ///< of the current code, by this machine's clock
    std::unique_ptr<Timer> m_pollTimer;
    bool m_isPollingDeviceCode = false;
};

} // namespace stillgate
