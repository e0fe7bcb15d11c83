#pragma once

#include "Models/BlockRules.h"
#include "Models/Devices.h"
#include "Models/Schedules.h"
#include "Models/Tasks.h"

namespace stillgate
{

/// The signed-in account.
struct SGUser
{
    std::string id;
    std::string email;
    std::optional<std::string> displayName;
    std::optional<bool> emailVerified;

    STILLGATE_RECORD(SGUser, id, email, displayName, emailVerified);
};

/// The streak counters of the signed-in user; all zero before any load and after sign-out.
struct Streak
{
    std::int64_t currentStreakDays = 0;
    std::int64_t longestStreakDays = 0;
    std::optional<std::string> streakStartDate;
    std::optional<std::string> lastActiveDate;

    STILLGATE_RECORD(Streak, currentStreakDays, longestStreakDays, streakStartDate, lastActiveDate);
};

/// The choices of the first-run flow, kept in the settings until the first sign-in applies them.
struct OnboardingSetup
{
    std::vector<std::string> categories;
    std::string policy;
    std::int64_t cooldownHours = 0;
    std::string scheduleType;
    std::string startTime; ///< "09:00"
    std::string endTime;   ///< "17:00"
    std::optional<std::string> userType;
    std::optional<bool> morningReminder;
    std::optional<bool> eveningReminder;
    std::optional<bool> wantsAffiliate;

    STILLGATE_RECORD(OnboardingSetup, categories, policy, cooldownHours, scheduleType, startTime, endTime, userType,
        morningReminder, eveningReminder, wantsAffiliate);
};

struct NotificationPreferences
{
    bool blockAlerts = false;
    bool streakReminders = false;
    bool taskNotifications = false;
    bool dailySummary = false;
    bool authorityRequests = false;
    bool limitWarnings = false;

    STILLGATE_RECORD(NotificationPreferences, blockAlerts, streakReminders, taskNotifications, dailySummary,
        authorityRequests, limitWarnings);
};

/// Everything that the backend keeps about an account.
struct UserDataExport
{
    SGUser user;
    std::vector<SGDevice> devices;
    std::vector<BlockRule> blockRules;
    std::vector<BlockSchedule> schedules;
    std::vector<SGTask> tasks;

    STILLGATE_RECORD(UserDataExport, user, devices, blockRules, schedules, tasks);
};

} // namespace stillgate
