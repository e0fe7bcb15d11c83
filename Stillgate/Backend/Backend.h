#pragma once

#include "Models/Account.h"
#include "Models/Groups.h"
#include "Models/Result.h"
#include "Models/ScreenTime.h"
#include "Models/Session.h"
#include "Models/Sharing.h"
#include "Models/Tasks.h"
#include "Platform/Cancellation.h"
#include "Platform/Task.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// The session with the REST backend, and the operations that the running session needs of it.
///
/// Every failure reaches the caller as it stands. An operation whose token is cancelled ends soon, with a failure;
/// one that is called with a cancelled token ends at once.
class Backend
{
public:
    virtual ~Backend() = default;

    /// Takes up the session that an earlier run has stored.
    virtual void loadTokens() = 0;
    /// Begins a session, here and in the store.
    virtual void setTokens(std::string_view access, std::string_view refresh) = 0;
    /// Ends the session, here and in the store.
    virtual void clearTokens() = 0;
    /// Whether there is an access token; the server may yet refuse it.
    [[nodiscard]] virtual bool isAuthenticated() const = 0;

    /// Needs no session.
    [[nodiscard]] virtual Task<Result<AppConfig>> getAppConfig() = 0;
    /// The start of a device sign-in, and what has become of it. Neither needs a session.
    [[nodiscard]] virtual Task<Result<DeviceCodeResponse>> requestDeviceCode() = 0;
    [[nodiscard]] virtual Task<Result<DeviceCodePollResponse>> pollDeviceCode(std::string deviceCode) = 0;

    [[nodiscard]] virtual Task<Result<Streak>> getStreak(CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<std::vector<BlockRule>>> getBlockRules(CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<std::vector<SGDevice>>> getDevices(CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<std::vector<BlockSchedule>>> getSchedules(CancellationToken token) = 0;
    /// `role`: "assignee", "assigner", or none for both.
    [[nodiscard]] virtual Task<Result<std::vector<SGTask>>> getTasks(
        std::optional<std::string> role, CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<ScreenTimeBudget>> getScreenTimeBudget(CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<SGUser>> getMe(CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<SharingCode>> getMySharingCode(CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<std::vector<SharingConnection>>> getSharingConnections(
        CancellationToken token) = 0;
    [[nodiscard]] virtual Task<Result<EffectiveRulesResponse>> getEffectiveRules(CancellationToken token) = 0;

    [[nodiscard]] virtual Task<Result<void>> sendHeartbeat(std::string deviceId, std::int64_t blockedAttempts) = 0;
    [[nodiscard]] virtual Task<Result<void>> reportUsage(std::int64_t usedMinutes) = 0;
    [[nodiscard]] virtual Task<Result<void>> sendDailyScreenTime(DailyScreenTime day) = 0;
    /// `eventType`: "app_deletion_attempt", "bypass_attempt".
    [[nodiscard]] virtual Task<Result<void>> reportTampering(
        std::string eventType, std::optional<std::string> details) = 0;

    // What the user does on the screens. An answer that is a record is the server's version of it.
    [[nodiscard]] virtual Task<Result<BlockRule>> createBlockRule(BlockRule rule) = 0;
    [[nodiscard]] virtual Task<Result<void>> deleteBlockRule(std::string id) = 0;
    [[nodiscard]] virtual Task<Result<BlockSchedule>> createSchedule(BlockSchedule schedule) = 0;
    [[nodiscard]] virtual Task<Result<void>> deleteSchedule(std::string id) = 0;
    [[nodiscard]] virtual Task<Result<SGTask>> createTask(CreateTaskBody body) = 0;
    [[nodiscard]] virtual Task<Result<SGTask>> completeTask(std::string id, std::optional<TaskProof> proof) = 0;
    [[nodiscard]] virtual Task<Result<SGTask>> approveTask(std::string id) = 0;
    [[nodiscard]] virtual Task<Result<SGTask>> rejectTask(std::string id, std::optional<std::string> reason) = 0;
    [[nodiscard]] virtual Task<Result<std::vector<GroupDashboardEntry>>> getGroupDashboard(std::string groupId) = 0;
    /// `period`: "week", "month".
    [[nodiscard]] virtual Task<Result<ScreenTimeReport>> getScreenTimeReport(std::string period) = 0;
    [[nodiscard]] virtual Task<Result<UserDataExport>> exportUserData() = 0;
    /// The account, for good.
    [[nodiscard]] virtual Task<Result<void>> deleteAccount() = 0;
};

} // namespace stillgate
