#pragma once

#include "Backend/Backend.h"
#include "Backend/RequestPipeline.h"
#include "Models/Groups.h"

namespace stillgate
{

/// The client of the REST backend: one operation for each thing that can be said to it. Nothing else talks to it.
///
/// No operation catches anything: each failure of RequestPipeline reaches its caller as it stands. Paths in comments
/// are relative to the base URL.
class APIService final : public Backend
{
public:
    APIService(
        std::string baseURL, HTTPTransport& transport, KeychainService& store, NotificationCenter& notifications);

    // The session.
    void loadTokens() override { m_pipeline.tokens().load(); }

    void clearTokens() override { m_pipeline.tokens().clear(); }

    [[nodiscard]] bool isAuthenticated() const override { return m_pipeline.tokens().access().has_value(); }

    void setTokens(std::string_view access, std::string_view refresh) override
    {
        m_pipeline.tokens().set(access, refresh);
    }

    // Session and account.
    [[nodiscard]] Task<Result<DeviceCodeResponse>> requestDeviceCode() override;
    [[nodiscard]] Task<Result<DeviceCodePollResponse>> pollDeviceCode(std::string deviceCode) override;
    [[nodiscard]] Task<Result<SGUser>> getMe(CancellationToken token) override;
    [[nodiscard]] Task<Result<UserDataExport>> exportUserData() override;
    [[nodiscard]] Task<Result<void>> deleteAccount() override;
    [[nodiscard]] Task<Result<AppConfig>> getAppConfig() override;

    // Blocking.
    [[nodiscard]] Task<Result<std::vector<BlockRule>>> getBlockRules(CancellationToken token) override;
    [[nodiscard]] Task<Result<EffectiveRulesResponse>> getEffectiveRules(CancellationToken token) override;
    [[nodiscard]] Task<Result<BlockRule>> createBlockRule(BlockRule rule) override;
    [[nodiscard]] Task<Result<void>> deleteBlockRule(std::string id) override;
    [[nodiscard]] Task<Result<std::vector<BlockSchedule>>> getSchedules(CancellationToken token) override;
    [[nodiscard]] Task<Result<BlockSchedule>> createSchedule(BlockSchedule schedule) override;
    [[nodiscard]] Task<Result<void>> deleteSchedule(std::string id) override;

    // Devices and statistics.
    [[nodiscard]] Task<Result<std::vector<SGDevice>>> getDevices(CancellationToken token) override;
    [[nodiscard]] Task<Result<SGDevice>> registerDevice(std::string name, std::string platform);
    [[nodiscard]] Task<Result<void>> sendHeartbeat(std::string deviceId, std::int64_t blockedAttempts) override;
    [[nodiscard]] Task<Result<Streak>> getStreak(CancellationToken token) override;
    [[nodiscard]] Task<Result<ScreenTimeReport>> getScreenTimeReport(std::string period) override;
    [[nodiscard]] Task<Result<void>> sendDailyScreenTime(DailyScreenTime day) override;

    // Sharing and guardians.
    [[nodiscard]] Task<Result<ScreenTimeBudget>> getScreenTimeBudget(CancellationToken token) override;
    [[nodiscard]] Task<Result<void>> reportUsage(std::int64_t usedMinutes) override;
    [[nodiscard]] Task<Result<SharingCode>> getMySharingCode(CancellationToken token) override;
    [[nodiscard]] Task<Result<SharingCode>> generateSharingCode();
    [[nodiscard]] Task<Result<LinkCodeResponse>> linkWithCode(std::string code);
    [[nodiscard]] Task<Result<std::vector<SharingConnection>>> getSharingConnections(CancellationToken token) override;
    [[nodiscard]] Task<Result<void>> deleteConnection(std::string id);
    [[nodiscard]] Task<Result<std::vector<ControlledUserSummary>>> getControlledUsers();
    [[nodiscard]] Task<Result<void>> setDailyLimit(std::string connectionId, std::int64_t minutes);
    [[nodiscard]] Task<Result<GuardianBlockRule>> createGuardianRule(
        std::string connectionId, CreateGuardianRuleBody body);
    [[nodiscard]] Task<Result<GuardianBlockRule>> updateGuardianRule(std::string ruleId, UpdateGuardianRuleBody body);
    [[nodiscard]] Task<Result<void>> deleteGuardianRule(std::string ruleId);
    [[nodiscard]] Task<Result<SharingConnection>> updateConnectionSettings(
        std::string connectionId, GuardianConnectionSettings settings);
    [[nodiscard]] Task<Result<std::vector<GuardianActivityEvent>>> getGuardianActivity(
        std::string connectionId, std::int64_t days);
    [[nodiscard]] Task<Result<SGTask>> assignGuardianTask(std::string connectionId, CreateTaskBody body);
    [[nodiscard]] Task<Result<std::vector<IllustrationOption>>> getIllustrations();
    [[nodiscard]] Task<Result<void>> reportTampering(
        std::string eventType, std::optional<std::string> details) override;

    // Tasks and groups.
    [[nodiscard]] Task<Result<std::vector<SGTask>>> getTasks(
        std::optional<std::string> role, CancellationToken token) override;
    [[nodiscard]] Task<Result<std::vector<TaskTemplate>>> getTaskTemplates();
    [[nodiscard]] Task<Result<SGTask>> createTask(CreateTaskBody body) override;
    [[nodiscard]] Task<Result<SGTask>> completeTask(std::string id, std::optional<TaskProof> proof) override;
    [[nodiscard]] Task<Result<SGTask>> approveTask(std::string id) override;
    [[nodiscard]] Task<Result<SGTask>> rejectTask(std::string id, std::optional<std::string> reason) override;
    [[nodiscard]] Task<Result<std::vector<GroupDashboardEntry>>> getGroupDashboard(std::string groupId) override;
    [[nodiscard]] Task<Result<std::vector<LeaderboardEntry>>> getLeaderboardStreak(std::string groupId);
    [[nodiscard]] Task<Result<std::vector<LeaderboardEntry>>> getLeaderboardFocus(
        std::string groupId, std::string period);
    [[nodiscard]] Task<Result<std::vector<LeaderboardEntry>>> getLeaderboardScreenTime(
        std::string groupId, std::string period);

    // Notifications.
    [[nodiscard]] Task<Result<void>> registerPushToken(
        std::string pushToken, std::string platform, std::optional<std::string> deviceId);
    [[nodiscard]] Task<Result<NotificationPreferences>> getNotificationPreferences();
    [[nodiscard]] Task<Result<NotificationPreferences>> updateNotificationPreferences(
        NotificationPreferences preferences);

private:
    RequestPipeline m_pipeline;
};

} // namespace stillgate
