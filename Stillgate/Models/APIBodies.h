#pragma once

#include "Models/Record.h"

#include <cstdint>
#include <optional>
#include <string>

namespace stillgate
{

// The small bodies of single operations.

struct PollDeviceCodeBody
{
    std::string device_code; // NOLINT(readability-identifier-naming): the key of the wire

    STILLGATE_RECORD(PollDeviceCodeBody, device_code);
};

struct RefreshTokenBody
{
    std::string refreshToken;

    STILLGATE_RECORD(RefreshTokenBody, refreshToken);
};

struct RegisterDeviceBody
{
    std::string deviceName;
    std::string platform;

    STILLGATE_RECORD(RegisterDeviceBody, deviceName, platform);
};

struct HeartbeatBody
{
    std::int64_t blockedAttempts = 0;
    bool blockingWasActive = true;

    STILLGATE_RECORD(HeartbeatBody, blockedAttempts, blockingWasActive);
};

struct ReportUsageBody
{
    std::int64_t usedMinutes = 0;

    STILLGATE_RECORD(ReportUsageBody, usedMinutes);
};

struct LinkCodeBody
{
    std::string code;

    STILLGATE_RECORD(LinkCodeBody, code);
};

struct DailyLimitBody
{
    std::string connectionId;
    std::int64_t dailyLimitMinutes = 0;

    STILLGATE_RECORD(DailyLimitBody, connectionId, dailyLimitMinutes);
};

struct TamperingBody
{
    std::string eventType;
    std::optional<std::string> details;

    STILLGATE_RECORD(TamperingBody, eventType, details);
};

struct RejectTaskBody
{
    std::optional<std::string> reason;

    STILLGATE_RECORD(RejectTaskBody, reason);
};

struct PushTokenBody
{
    std::string token;
    std::string platform;
    std::optional<std::string> deviceId;

    STILLGATE_RECORD(PushTokenBody, token, platform, deviceId);
};

} // namespace stillgate
