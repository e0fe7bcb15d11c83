#pragma once

#include "Models/APIBodies.h"
#include "Models/Account.h"
#include "Models/Groups.h"
#include "Models/ScreenTime.h"
#include "Models/Session.h"
#include "Models/Sharing.h"

namespace stillgate
{

template <class... Types>
struct RecordList
{
    static constexpr std::size_t size = sizeof...(Types);
};

/// Every record of Stillgate/Models. A new one goes to the end, so that the inputs that fuzz targets have stored keep
/// their meaning.
using AllRecords = RecordList<AppInfo, BlockRule, GuardianBlockRule, EffectiveRule, GuardianConnectionInfo,
    EffectiveRulesResponse, CreateGuardianRuleBody, UpdateGuardianRuleBody, ProcessBlockEntry, SGTask, CreateTaskBody,
    TaskProof, TaskTemplate, SharingConnection, SharingCode, LinkCodeResponse, ControlledUserSummary,
    GuardianActivityEvent, GuardianConnectionSettings, IllustrationOption, AppConfig, TokenRefreshResponse,
    ErrorResponse, DeviceCodeResponse, DeviceCodePollResponse, ScreenTimeBudget, AppUsageEntry, DailyScreenTime,
    ScreenTimeReport, SGUser, Streak, OnboardingSetup, NotificationPreferences, UserDataExport, SGDevice, BlockSchedule,
    LeaderboardEntry, GroupDashboardEntry, PollDeviceCodeBody, RefreshTokenBody, RegisterDeviceBody, HeartbeatBody,
    ReportUsageBody, LinkCodeBody, DailyLimitBody, TamperingBody, RejectTaskBody, PushTokenBody>;

} // namespace stillgate
