#pragma once

#include "Backend/Backend.h"
#include "Platform/OneShotEvent.h"

#include <map>
#include <memory>

namespace stillgate::test
{

/// A backend whose answers a test sets; every call that has none fails as if the network were down.
class FakeBackend final : public Backend
{
public:
    static std::unexpected<Error> unreachable() { return failure(APIError::transport("unreachable")); }

    bool hasStoredTokens = true;
    bool authenticated = false;
    std::vector<std::string> calls;

    Result<AppConfig> appConfig = unreachable();
    Result<DeviceCodeResponse> deviceCode = unreachable();
    Result<DeviceCodePollResponse> poll = unreachable();
    std::vector<std::string> storedTokens; ///< access and refresh, of the last sign-in
    std::vector<DailyScreenTime> reportedDays;
    Result<Streak> streak = unreachable();
    Result<std::vector<BlockRule>> blockRules = unreachable();
    Result<std::vector<SGDevice>> devices = unreachable();
    Result<std::vector<BlockSchedule>> schedules = unreachable();
    std::map<std::string, Result<std::vector<SGTask>>> tasks; ///< by role, "" for none
    Result<ScreenTimeBudget> budget = unreachable();
    Result<SGUser> me = unreachable();
    Result<SharingCode> sharingCode = unreachable();
    Result<std::vector<SharingConnection>> connections = unreachable();
    Result<EffectiveRulesResponse> effectiveRules = unreachable();
    std::vector<std::int64_t> reportedMinutes;
    Result<void> accepted = unreachable(); ///< what reports and deletions are answered with

    std::vector<BlockRule> sentRules;
    std::vector<BlockSchedule> sentSchedules;
    std::vector<CreateTaskBody> sentTasks;
    Result<BlockRule> createdRule = unreachable();
    Result<BlockSchedule> createdSchedule = unreachable();
    Result<SGTask> task = unreachable(); ///< what becomes of one that is created, completed, approved or rejected
    Result<std::vector<GroupDashboardEntry>> group = unreachable();
    std::map<std::string, Result<ScreenTimeReport>> reports; ///< by period
    Result<UserDataExport> exported = unreachable();
    /// A call that waits goes on waiting when it is cancelled, and fails when it is released.
    bool isSlowToCancel = false;

    /// From now on the call waits, until it is released or cancelled.
    void hold(const std::string& call) { m_held[call] = std::make_shared<OneShotEvent>(); }

    void release(const std::string& call) { takeHold(call)->happen(); }

    /// Later calls don't wait; those that do go on when the event happens.
    std::shared_ptr<OneShotEvent> takeHold(const std::string& call) { return m_held.extract(call).mapped(); }

    /// A streak, no rules, no devices: enough for an online start.
    void answerFirstLoad()
    {
        streak = Streak{.currentStreakDays = 1};
        blockRules = std::vector<BlockRule>{};
        devices = std::vector<SGDevice>{};
    }

    void loadTokens() override;
    void setTokens(std::string_view access, std::string_view refresh) override;
    void clearTokens() override;
    [[nodiscard]] bool isAuthenticated() const override;
    Task<Result<AppConfig>> getAppConfig() override;
    Task<Result<DeviceCodeResponse>> requestDeviceCode() override;
    Task<Result<DeviceCodePollResponse>> pollDeviceCode(std::string code) override;
    Task<Result<Streak>> getStreak(CancellationToken token) override;
    Task<Result<std::vector<BlockRule>>> getBlockRules(CancellationToken token) override;
    Task<Result<std::vector<SGDevice>>> getDevices(CancellationToken token) override;
    Task<Result<std::vector<BlockSchedule>>> getSchedules(CancellationToken token) override;
    Task<Result<std::vector<SGTask>>> getTasks(std::optional<std::string> role, CancellationToken token) override;
    Task<Result<ScreenTimeBudget>> getScreenTimeBudget(CancellationToken token) override;
    Task<Result<SGUser>> getMe(CancellationToken token) override;
    Task<Result<SharingCode>> getMySharingCode(CancellationToken token) override;
    Task<Result<std::vector<SharingConnection>>> getSharingConnections(CancellationToken token) override;
    Task<Result<EffectiveRulesResponse>> getEffectiveRules(CancellationToken token) override;
    Task<Result<void>> sendHeartbeat(std::string deviceId, std::int64_t blockedAttempts) override;
    Task<Result<void>> reportUsage(std::int64_t usedMinutes) override;
    Task<Result<void>> sendDailyScreenTime(DailyScreenTime day) override;
    Task<Result<void>> reportTampering(std::string eventType, std::optional<std::string> details) override;
    Task<Result<BlockRule>> createBlockRule(BlockRule rule) override;
    Task<Result<void>> deleteBlockRule(std::string id) override;
    Task<Result<BlockSchedule>> createSchedule(BlockSchedule schedule) override;
    Task<Result<void>> deleteSchedule(std::string id) override;
    Task<Result<SGTask>> createTask(CreateTaskBody body) override;
    Task<Result<SGTask>> completeTask(std::string id, std::optional<TaskProof> proof) override;
    Task<Result<SGTask>> approveTask(std::string id) override;
    Task<Result<SGTask>> rejectTask(std::string id, std::optional<std::string> reason) override;
    Task<Result<std::vector<GroupDashboardEntry>>> getGroupDashboard(std::string groupId) override;
    Task<Result<ScreenTimeReport>> getScreenTimeReport(std::string period) override;
    Task<Result<UserDataExport>> exportUserData() override;
    Task<Result<void>> deleteAccount() override;

private:
    template <class T>
    Task<Result<T>> answer(std::string call, const Result<T>* result, CancellationToken token);

    std::map<std::string, std::shared_ptr<OneShotEvent>> m_held;
};

} // namespace stillgate::test
