#include "tests/support/FakeBackend.h"

namespace stillgate::test
{

template <class T>
Task<Result<T>> FakeBackend::answer(std::string call, const Result<T>* result, CancellationToken token)
{
    calls.push_back(call);
    if (const auto held = m_held.find(call); held != m_held.end() && !token.isCancelled()) {
        const auto released = held->second;
        const auto onCancel = isSlowToCancel ? nullptr : token.onCancel([released] { released->happen(); });
        co_await *released;
    }
    if (token.isCancelled()) {
        calls.push_back("cancelled " + call);
        co_return failure(APIError::transport("cancelled"));
    }
    co_return *result;
}

void FakeBackend::loadTokens()
{
    calls.emplace_back("loadTokens");
    authenticated = hasStoredTokens;
}

void FakeBackend::setTokens(std::string_view access, std::string_view refresh)
{
    storedTokens = {std::string{access}, std::string{refresh}};
    hasStoredTokens = authenticated = true;
}

void FakeBackend::clearTokens()
{
    authenticated = hasStoredTokens = false;
}

bool FakeBackend::isAuthenticated() const
{
    return authenticated;
}

Task<Result<AppConfig>> FakeBackend::getAppConfig()
{
    return answer("getAppConfig", &appConfig, {});
}

Task<Result<DeviceCodeResponse>> FakeBackend::requestDeviceCode()
{
    return answer("requestDeviceCode", &deviceCode, {});
}

Task<Result<DeviceCodePollResponse>> FakeBackend::pollDeviceCode(std::string code)
{
    return answer("pollDeviceCode " + code, &poll, {});
}

Task<Result<Streak>> FakeBackend::getStreak(CancellationToken token)
{
    return answer("getStreak", &streak, token);
}

Task<Result<std::vector<BlockRule>>> FakeBackend::getBlockRules(CancellationToken token)
{
    return answer("getBlockRules", &blockRules, token);
}

Task<Result<std::vector<SGDevice>>> FakeBackend::getDevices(CancellationToken token)
{
    return answer("getDevices", &devices, token);
}

Task<Result<std::vector<BlockSchedule>>> FakeBackend::getSchedules(CancellationToken token)
{
    return answer("getSchedules", &schedules, token);
}

Task<Result<std::vector<SGTask>>> FakeBackend::getTasks(std::optional<std::string> role, CancellationToken token)
{
    const auto name = role.value_or("");
    return answer("getTasks " + name, &tasks.try_emplace(name, unreachable()).first->second, token);
}

Task<Result<ScreenTimeBudget>> FakeBackend::getScreenTimeBudget(CancellationToken token)
{
    return answer("getScreenTimeBudget", &budget, token);
}

Task<Result<SGUser>> FakeBackend::getMe(CancellationToken token)
{
    return answer("getMe", &me, token);
}

Task<Result<SharingCode>> FakeBackend::getMySharingCode(CancellationToken token)
{
    return answer("getMySharingCode", &sharingCode, token);
}

Task<Result<std::vector<SharingConnection>>> FakeBackend::getSharingConnections(CancellationToken token)
{
    return answer("getSharingConnections", &connections, token);
}

Task<Result<EffectiveRulesResponse>> FakeBackend::getEffectiveRules(CancellationToken token)
{
    return answer("getEffectiveRules", &effectiveRules, token);
}

Task<Result<void>> FakeBackend::sendHeartbeat(std::string deviceId, std::int64_t blockedAttempts)
{
    calls.push_back("sendHeartbeat " + deviceId + " " + std::to_string(blockedAttempts));
    co_return unreachable();
}

Task<Result<void>> FakeBackend::reportUsage(std::int64_t usedMinutes)
{
    reportedMinutes.push_back(usedMinutes);
    co_return unreachable();
}

Task<Result<void>> FakeBackend::sendDailyScreenTime(DailyScreenTime day)
{
    reportedDays.push_back(std::move(day));
    return answer("sendDailyScreenTime", &accepted, {});
}

Task<Result<void>> FakeBackend::reportTampering(std::string eventType, std::optional<std::string> details)
{
    return answer("reportTampering " + eventType + ": " + details.value_or(""), &accepted, {});
}

Task<Result<BlockRule>> FakeBackend::createBlockRule(BlockRule rule)
{
    sentRules.push_back(std::move(rule));
    return answer("createBlockRule", &createdRule, {});
}

Task<Result<void>> FakeBackend::deleteBlockRule(std::string id)
{
    return answer("deleteBlockRule " + id, &accepted, {});
}

Task<Result<BlockSchedule>> FakeBackend::createSchedule(BlockSchedule schedule)
{
    sentSchedules.push_back(std::move(schedule));
    return answer("createSchedule", &createdSchedule, {});
}

Task<Result<void>> FakeBackend::deleteSchedule(std::string id)
{
    return answer("deleteSchedule " + id, &accepted, {});
}

Task<Result<SGTask>> FakeBackend::createTask(CreateTaskBody body)
{
    sentTasks.push_back(std::move(body));
    return answer("createTask", &task, {});
}

Task<Result<SGTask>> FakeBackend::completeTask(std::string id, std::optional<TaskProof> proof)
{
    return answer("completeTask " + id + (proof ? " with proof" : ""), &task, {});
}

Task<Result<SGTask>> FakeBackend::approveTask(std::string id)
{
    return answer("approveTask " + id, &task, {});
}

Task<Result<SGTask>> FakeBackend::rejectTask(std::string id, std::optional<std::string> reason)
{
    return answer("rejectTask " + id + (reason ? ": " + *reason : ""), &task, {});
}

Task<Result<std::vector<GroupDashboardEntry>>> FakeBackend::getGroupDashboard(std::string groupId)
{
    return answer("getGroupDashboard " + groupId, &group, {});
}

Task<Result<ScreenTimeReport>> FakeBackend::getScreenTimeReport(std::string period)
{
    return answer("getScreenTimeReport " + period, &reports.try_emplace(period, unreachable()).first->second, {});
}

Task<Result<UserDataExport>> FakeBackend::exportUserData()
{
    return answer("exportUserData", &exported, {});
}

Task<Result<void>> FakeBackend::deleteAccount()
{
    return answer("deleteAccount", &accepted, {});
}

} // namespace stillgate::test
