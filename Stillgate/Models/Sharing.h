#pragma once

#include "Models/BlockRules.h"

namespace stillgate
{

/// A guardian link between two accounts.
struct SharingConnection
{
    std::string id;
    std::string controllerUserId;
    std::string controlledUserId;
    std::optional<std::string> controllerName;
    std::optional<std::string> controlledName;
    std::string role; ///< the signed-in user's side; "controlled" where the user is the one controlled
    std::int64_t dailyLimitMinutes = 0;
    std::optional<std::string> flexibilityMode; ///< "flexible", "permanent"
    std::optional<std::string> customBlockMessage;
    std::optional<std::string> blockIllustrationKey;
    bool isActive = false;
    std::optional<Date> createdAt;

    STILLGATE_RECORD(SharingConnection, id, controllerUserId, controlledUserId, controllerName, controlledName, role,
        dailyLimitMinutes, flexibilityMode, customBlockMessage, blockIllustrationKey, isActive, createdAt);
};

/// The code by which somebody links with its owner.
struct SharingCode
{
    std::string code;
    std::string userId;
    std::optional<Date> createdAt;
    std::optional<Date> expiresAt;
    bool isActive = false;

    STILLGATE_RECORD(SharingCode, code, userId, createdAt, expiresAt, isActive);
};

struct LinkCodeResponse
{
    SharingConnection connection;

    STILLGATE_RECORD(LinkCodeResponse, connection);
};

/// What a guardian sees of one controlled user; `id` is the connection's.
struct ControlledUserSummary
{
    std::string id;
    std::string userId;
    std::optional<std::string> displayName;
    std::int64_t screenTimeToday = 0; ///< minutes
    std::int64_t dailyLimit = 0;      ///< minutes
    std::int64_t earnedMinutes = 0;
    std::int64_t pendingTasks = 0;
    std::int64_t completedTasks = 0;
    std::int64_t streak = 0; ///< days
    bool isOnline = false;
    std::optional<Date> lastActiveAt;
    std::optional<std::string> flexibilityMode;
    std::optional<std::string> customBlockMessage;
    std::optional<std::string> blockIllustrationKey;
    std::optional<std::vector<GuardianBlockRule>> guardianRules;

    STILLGATE_RECORD(ControlledUserSummary, id, userId, displayName, screenTimeToday, dailyLimit, earnedMinutes,
        pendingTasks, completedTasks, streak, isOnline, lastActiveAt, flexibilityMode, customBlockMessage,
        blockIllustrationKey, guardianRules);
};

/// One line of a guardian's activity feed.
struct GuardianActivityEvent
{
    std::int64_t id = 0;
    std::string connectionId;
    std::string actorUserId;
    std::string eventType;
    std::string message;
    std::optional<std::map<std::string, std::string>> metadata;
    std::optional<Date> createdAt;

    STILLGATE_RECORD(GuardianActivityEvent, id, connectionId, actorUserId, eventType, message, metadata, createdAt);
};

/// A partial update of a connection: what is none stays as it is.
struct GuardianConnectionSettings
{
    std::optional<std::string> flexibilityMode;
    std::optional<std::string> customBlockMessage;
    std::optional<std::string> blockIllustrationKey;

    STILLGATE_RECORD(GuardianConnectionSettings, flexibilityMode, customBlockMessage, blockIllustrationKey);
};

struct IllustrationOption
{
    std::string key; ///< also its identity
    std::string name;
    std::string category;

    STILLGATE_RECORD(IllustrationOption, key, name, category);
};

} // namespace stillgate
