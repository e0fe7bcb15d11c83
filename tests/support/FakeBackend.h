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

    void setTokens(std::string_view access, std::string_view refresh) override
    {
        storedTokens = {std::string{access}, std::string{refresh}};
        hasStoredTokens = authenticated = true;
    }

    void clearTokens() override { authenticated = hasStoredTokens = false; }

    [[nodiscard]] bool isAuthenticated() const override { return authenticated; }

    Task<Result<AppConfig>> getAppConfig() override { return answer("getAppConfig", &appConfig, {}); }

    Task<Result<DeviceCodeResponse>> requestDeviceCode() override
    {
        return answer("requestDeviceCode", &deviceCode, {});
    }

    Task<Result<DeviceCodePollResponse>> pollDeviceCode(std::string code) override
    {
        return answer("pollDeviceCode " + code, &poll, {});
    }

    Task<Result<Streak>> getStreak(CancellationToken token) override { return answer("getStreak", &streak, token); }

    Task<Result<std::vector<BlockRule>>> getBlockRules(CancellationToken token) override
    {
        return answer("getBlockRules", &blockRules, token);
    }

    Task<Result<std::vector<SGDevice>>> getDevices(CancellationToken token) override
    {
        return answer("getDevices", &devices, token);
    }

    Task<Result<std::vector<BlockSchedule>>> getSchedules(CancellationToken token) override
    {
        return answer("getSchedules", &schedules, token);
    }

    Task<Result<std::vector<SGTask>>> getTasks(std::optional<std::string> role, CancellationToken token) override
    {
        const auto name = role.value_or("");
        return answer("getTasks " + name, &tasks.try_emplace(name, unreachable()).first->second, token);
    }

    Task<Result<ScreenTimeBudget>> getScreenTimeBudget(CancellationToken token) override
    {
        return answer("getScreenTimeBudget", &budget, token);
    }

    Task<Result<SGUser>> getMe(CancellationToken token) override { return answer("getMe", &me, token); }

    Task<Result<SharingCode>> getMySharingCode(CancellationToken token) override
    {
        return answer("getMySharingCode", &sharingCode, token);
    }

    Task<Result<std::vector<SharingConnection>>> getSharingConnections(CancellationToken token) override
    {
        return answer("getSharingConnections", &connections, token);
    }

    Task<Result<EffectiveRulesResponse>> getEffectiveRules(CancellationToken token) override
    {
        return answer("getEffectiveRules", &effectiveRules, token);
    }

    Task<Result<void>> sendHeartbeat(std::string deviceId, std::int64_t blockedAttempts) override
    {
        calls.push_back("sendHeartbeat " + deviceId + " " + std::to_string(blockedAttempts));
        co_return unreachable();
    }

    Task<Result<void>> reportUsage(std::int64_t usedMinutes) override
    {
        reportedMinutes.push_back(usedMinutes);
        co_return unreachable();
    }

    Task<Result<void>> sendDailyScreenTime(DailyScreenTime day) override
    {
        reportedDays.push_back(std::move(day));
        return answer("sendDailyScreenTime", &accepted, {});
    }

    Task<Result<void>> reportTampering(std::string eventType, std::optional<std::string> details) override
    {
        return answer("reportTampering " + eventType + ": " + details.value_or(""), &accepted, {});
    }

    Task<Result<BlockRule>> createBlockRule(BlockRule rule) override
    {
        sentRules.push_back(std::move(rule));
        return answer("createBlockRule", &createdRule, {});
    }

    Task<Result<void>> deleteBlockRule(std::string id) override
    {
        return answer("deleteBlockRule " + id, &accepted, {});
    }

    Task<Result<BlockSchedule>> createSchedule(BlockSchedule schedule) override
    {
        sentSchedules.push_back(std::move(schedule));
        return answer("createSchedule", &createdSchedule, {});
    }

    Task<Result<void>> deleteSchedule(std::string id) override { return answer("deleteSchedule " + id, &accepted, {}); }

    Task<Result<SGTask>> createTask(CreateTaskBody body) override
    {
        sentTasks.push_back(std::move(body));
        return answer("createTask", &task, {});
    }

    Task<Result<SGTask>> completeTask(std::string id, std::optional<TaskProof> proof) override
    {
        return answer("completeTask " + id + (proof ? " with proof" : ""), &task, {});
    }

    Task<Result<SGTask>> approveTask(std::string id) override { return answer("approveTask " + id, &task, {}); }

    Task<Result<SGTask>> rejectTask(std::string id, std::optional<std::string> reason) override
    {
        return answer("rejectTask " + id + (reason ? ": " + *reason : ""), &task, {});
    }

    Task<Result<std::vector<GroupDashboardEntry>>> getGroupDashboard(std::string groupId) override
    {
        return answer("getGroupDashboard " + groupId, &group, {});
    }

    Task<Result<ScreenTimeReport>> getScreenTimeReport(std::string period) override
    {
        return answer("getScreenTimeReport " + period, &reports.try_emplace(period, unreachable()).first->second, {});
    }

    Task<Result<UserDataExport>> exportUserData() override { return answer("exportUserData", &exported, {}); }

    Task<Result<void>> deleteAccount() override { return answer("deleteAccount", &accepted, {}); }

private:
    /// Defined in FakeBackend.cpp, as loadTokens() is: so the overrides are compiled there alone.
    template <class T>
    Task<Result<T>> answer(std::string call, const Result<T>* result, CancellationToken token);

    std::map<std::string, std::shared_ptr<OneShotEvent>> m_held;
};

} // namespace stillgate::test
