#pragma once

#include "Models/Account.h"

namespace stillgate
{

/// The remote switchboard: maintenance, and the oldest version that is still allowed.
struct AppConfig
{
    bool maintenanceMode = false;
    std::optional<std::string> maintenanceMessage;
    std::optional<std::string> minVersion;
    std::optional<std::string> forceUpdateMessage;
    std::optional<std::string> forceUpdateUrl;

    STILLGATE_RECORD(AppConfig, maintenanceMode, maintenanceMessage, minVersion, forceUpdateMessage, forceUpdateUrl);
};

struct TokenRefreshResponse
{
    std::string accessToken;
    std::string refreshToken;

    STILLGATE_RECORD(TokenRefreshResponse, accessToken, refreshToken);
};

/// The body of every answer that is no success.
struct ErrorResponse
{
    std::string error;

    STILLGATE_RECORD(ErrorResponse, error);
};

/// The start of a device sign-in (the device authorization grant of RFC 8628, with this system's own keys).
struct DeviceCodeResponse
{
    std::string deviceCode;
    std::string userCode;
    std::string verificationUrl;
    std::optional<std::string> verificationUrlComplete;
    std::int64_t expiresIn = 0; ///< seconds
    std::int64_t interval = 0;  ///< seconds between two polls

    STILLGATE_RECORD(
        DeviceCodeResponse, deviceCode, userCode, verificationUrl, verificationUrlComplete, expiresIn, interval);
};

struct DeviceCodePollResponse
{
    std::string status; ///< "pending" while the user has not finished
    std::optional<std::string> accessToken;
    std::optional<std::string> refreshToken;
    std::optional<SGUser> user;

    STILLGATE_RECORD(DeviceCodePollResponse, status, accessToken, refreshToken, user);
};

} // namespace stillgate
