#include "Backend/APIService.h"

#include "Backend/RequestPath.h"
#include "Models/APIBodies.h"

namespace stillgate
{

namespace
{

using Call = RequestPipeline::Call;

/// What the backend says to an operation that gives nothing back.
using Acknowledgement = std::map<std::string, bool>;

Call get(std::string path, CancellationToken token = {})
{
    return {.method = "GET", .path = std::move(path), .token = std::move(token)};
}

Call remove(std::string path)
{
    return {.method = "DELETE", .path = std::move(path)};
}

Call post(std::string path)
{
    return {.method = "POST", .path = std::move(path)};
}

template <class Body>
Call post(std::string path, const Body& body)
{
    return {.method = "POST", .path = std::move(path), .body = RequestPipeline::encoded(body)};
}

template <class Body>
Call put(std::string path, const Body& body)
{
    return {.method = "PUT", .path = std::move(path), .body = RequestPipeline::encoded(body)};
}

Call withoutSession(Call call)
{
    call.authentication = RequestPipeline::Authentication::none;
    return call;
}

/// Drops the answer, which has to decode all the same.
template <class T>
Task<Result<void>> dropped(Task<Result<T>> answer)
{
    const auto result = co_await answer;
    co_return result ? Result<void>{} : std::unexpected{result.error()};
}

} // namespace

APIService::APIService(
    std::string baseURL, HTTPTransport& transport, KeychainService& store, NotificationCenter& notifications)
    : m_pipeline(std::move(baseURL), transport, store, notifications)
{}

// Session and account.

Task<Result<DeviceCodeResponse>> APIService::requestDeviceCode()
{
    return m_pipeline.request<DeviceCodeResponse>(withoutSession(post("/auth/device-code")));
}

Task<Result<DeviceCodePollResponse>> APIService::pollDeviceCode(std::string deviceCode)
{
    return m_pipeline.request<DeviceCodePollResponse>(
        withoutSession(post("/auth/device-code/poll", PollDeviceCodeBody{deviceCode})));
}

Task<Result<SGUser>> APIService::getMe(CancellationToken token)
{
    return m_pipeline.request<SGUser>(get("/auth/me", token));
}

Task<Result<UserDataExport>> APIService::exportUserData()
{
    return m_pipeline.request<UserDataExport>(get("/auth/export"));
}

Task<Result<void>> APIService::deleteAccount()
{
    return dropped(m_pipeline.request<Acknowledgement>(remove("/auth/account")));
}

Task<Result<AppConfig>> APIService::getAppConfig()
{
    return m_pipeline.request<AppConfig>(withoutSession(get("/app-config")));
}

// Blocking.

Task<Result<std::vector<BlockRule>>> APIService::getBlockRules(CancellationToken token)
{
    return m_pipeline.request<std::vector<BlockRule>>(get("/block-rules", token));
}

Task<Result<EffectiveRulesResponse>> APIService::getEffectiveRules(CancellationToken token)
{
    return m_pipeline.request<EffectiveRulesResponse>(get("/block-rules/effective", token));
}

Task<Result<BlockRule>> APIService::createBlockRule(BlockRule rule)
{
    return m_pipeline.request<BlockRule>(post("/block-rules", rule));
}

Task<Result<void>> APIService::deleteBlockRule(std::string id)
{
    return dropped(m_pipeline.request<Acknowledgement>(remove("/block-rules/" + pathEncoded(id))));
}

Task<Result<std::vector<BlockSchedule>>> APIService::getSchedules(CancellationToken token)
{
    return m_pipeline.request<std::vector<BlockSchedule>>(get("/schedules", token));
}

Task<Result<BlockSchedule>> APIService::createSchedule(BlockSchedule schedule)
{
    return m_pipeline.request<BlockSchedule>(post("/schedules", schedule));
}

Task<Result<void>> APIService::deleteSchedule(std::string id)
{
    return dropped(m_pipeline.request<Acknowledgement>(remove("/schedules/" + pathEncoded(id))));
}

// Devices and statistics.

Task<Result<std::vector<SGDevice>>> APIService::getDevices(CancellationToken token)
{
    return m_pipeline.request<std::vector<SGDevice>>(get("/devices", token));
}

Task<Result<SGDevice>> APIService::registerDevice(std::string name, std::string platform)
{
    return m_pipeline.request<SGDevice>(post("/devices", RegisterDeviceBody{name, platform}));
}

Task<Result<void>> APIService::sendHeartbeat(std::string deviceId, std::int64_t blockedAttempts)
{
    return dropped(m_pipeline.request<Acknowledgement>(
        post("/devices/" + pathEncoded(deviceId) + "/heartbeat", HeartbeatBody{.blockedAttempts = blockedAttempts})));
}

Task<Result<Streak>> APIService::getStreak(CancellationToken token)
{
    return m_pipeline.request<Streak>(get("/stats/streak", token));
}

Task<Result<ScreenTimeReport>> APIService::getScreenTimeReport(std::string period)
{
    return m_pipeline.request<ScreenTimeReport>(get(makePath("/screen-time/report", {{"period", period}})));
}

Task<Result<void>> APIService::sendDailyScreenTime(DailyScreenTime day)
{
    return dropped(m_pipeline.request<Acknowledgement>(post("/screen-time/daily", day)));
}

// Sharing and guardians.

Task<Result<ScreenTimeBudget>> APIService::getScreenTimeBudget(CancellationToken token)
{
    return m_pipeline.request<ScreenTimeBudget>(get("/sharing/budget", token));
}

Task<Result<void>> APIService::reportUsage(std::int64_t usedMinutes)
{
    return dropped(m_pipeline.request<Acknowledgement>(post("/sharing/report-usage", ReportUsageBody{usedMinutes})));
}

Task<Result<SharingCode>> APIService::getMySharingCode(CancellationToken token)
{
    return m_pipeline.request<SharingCode>(get("/sharing/my-code", token));
}

Task<Result<SharingCode>> APIService::generateSharingCode()
{
    return m_pipeline.request<SharingCode>(post("/sharing/generate"));
}

Task<Result<LinkCodeResponse>> APIService::linkWithCode(std::string code)
{
    return m_pipeline.request<LinkCodeResponse>(post("/sharing/link", LinkCodeBody{code}));
}

Task<Result<std::vector<SharingConnection>>> APIService::getSharingConnections(CancellationToken token)
{
    return m_pipeline.request<std::vector<SharingConnection>>(get("/sharing/connections", token));
}

Task<Result<void>> APIService::deleteConnection(std::string id)
{
    return dropped(m_pipeline.request<Acknowledgement>(remove("/sharing/connections/" + pathEncoded(id))));
}

Task<Result<std::vector<ControlledUserSummary>>> APIService::getControlledUsers()
{
    return m_pipeline.request<std::vector<ControlledUserSummary>>(get("/sharing/controlled-users"));
}

Task<Result<void>> APIService::setDailyLimit(std::string connectionId, std::int64_t minutes)
{
    return dropped(m_pipeline.request<SharingConnection>(put("/sharing/limit", DailyLimitBody{connectionId, minutes})));
}

Task<Result<GuardianBlockRule>> APIService::createGuardianRule(std::string connectionId, CreateGuardianRuleBody body)
{
    return m_pipeline.request<GuardianBlockRule>(
        post("/guardian/connections/" + pathEncoded(connectionId) + "/rules", body));
}

Task<Result<GuardianBlockRule>> APIService::updateGuardianRule(std::string ruleId, UpdateGuardianRuleBody body)
{
    return m_pipeline.request<GuardianBlockRule>(put("/guardian/rules/" + pathEncoded(ruleId), body));
}

Task<Result<void>> APIService::deleteGuardianRule(std::string ruleId)
{
    return dropped(m_pipeline.request<Acknowledgement>(remove("/guardian/rules/" + pathEncoded(ruleId))));
}

Task<Result<SharingConnection>> APIService::updateConnectionSettings(
    std::string connectionId, GuardianConnectionSettings settings)
{
    return m_pipeline.request<SharingConnection>(
        put("/guardian/connections/" + pathEncoded(connectionId) + "/settings", settings));
}

Task<Result<std::vector<GuardianActivityEvent>>> APIService::getGuardianActivity(
    std::string connectionId, std::int64_t days)
{
    return m_pipeline.request<std::vector<GuardianActivityEvent>>(get(makePath(
        "/guardian/connections/" + pathEncoded(connectionId) + "/activity", {{"days", std::to_string(days)}})));
}

Task<Result<SGTask>> APIService::assignGuardianTask(std::string connectionId, CreateTaskBody body)
{
    return m_pipeline.request<SGTask>(post("/guardian/connections/" + pathEncoded(connectionId) + "/tasks", body));
}

Task<Result<std::vector<IllustrationOption>>> APIService::getIllustrations()
{
    return m_pipeline.request<std::vector<IllustrationOption>>(get("/guardian/illustrations"));
}

Task<Result<void>> APIService::reportTampering(std::string eventType, std::optional<std::string> details)
{
    return dropped(m_pipeline.request<Acknowledgement>(post("/guardian/tampering", TamperingBody{eventType, details})));
}

// Tasks and groups.

Task<Result<std::vector<SGTask>>> APIService::getTasks(std::optional<std::string> role, CancellationToken token)
{
    const auto path = role ? makePath("/tasks", {{"role", *role}}) : "/tasks";
    return m_pipeline.request<std::vector<SGTask>>(get(path, token));
}

Task<Result<std::vector<TaskTemplate>>> APIService::getTaskTemplates()
{
    return m_pipeline.request<std::vector<TaskTemplate>>(get("/tasks/templates"));
}

Task<Result<SGTask>> APIService::createTask(CreateTaskBody body)
{
    return m_pipeline.request<SGTask>(post("/tasks", body));
}

Task<Result<SGTask>> APIService::completeTask(std::string id, std::optional<TaskProof> proof)
{
    auto call = post("/tasks/" + pathEncoded(id) + "/complete");
    call.body = proof ? RequestPipeline::encoded(*proof) : "{}";
    return m_pipeline.request<SGTask>(std::move(call));
}

Task<Result<SGTask>> APIService::approveTask(std::string id)
{
    return m_pipeline.request<SGTask>(post("/tasks/" + pathEncoded(id) + "/approve"));
}

Task<Result<SGTask>> APIService::rejectTask(std::string id, std::optional<std::string> reason)
{
    return m_pipeline.request<SGTask>(post("/tasks/" + pathEncoded(id) + "/reject", RejectTaskBody{reason}));
}

Task<Result<std::vector<GroupDashboardEntry>>> APIService::getGroupDashboard(std::string groupId)
{
    return m_pipeline.request<std::vector<GroupDashboardEntry>>(get("/groups/" + pathEncoded(groupId) + "/dashboard"));
}

Task<Result<std::vector<LeaderboardEntry>>> APIService::getLeaderboardStreak(std::string groupId)
{
    return m_pipeline.request<std::vector<LeaderboardEntry>>(
        get(makePath("/leaderboard/streak", {{"groupId", groupId}})));
}

Task<Result<std::vector<LeaderboardEntry>>> APIService::getLeaderboardFocus(std::string groupId, std::string period)
{
    return m_pipeline.request<std::vector<LeaderboardEntry>>(
        get(makePath("/leaderboard/focus", {{"groupId", groupId}, {"period", period}})));
}

Task<Result<std::vector<LeaderboardEntry>>> APIService::getLeaderboardScreenTime(
    std::string groupId, std::string period)
{
    return m_pipeline.request<std::vector<LeaderboardEntry>>(
        get(makePath("/leaderboard/screen-time", {{"groupId", groupId}, {"period", period}})));
}

// Notifications.

Task<Result<void>> APIService::registerPushToken(
    std::string pushToken, std::string platform, std::optional<std::string> deviceId)
{
    return dropped(m_pipeline.request<std::map<std::string, std::string>>(
        post("/notifications/register", PushTokenBody{pushToken, platform, deviceId})));
}

Task<Result<NotificationPreferences>> APIService::getNotificationPreferences()
{
    return m_pipeline.request<NotificationPreferences>(get("/notifications/preferences"));
}

Task<Result<NotificationPreferences>> APIService::updateNotificationPreferences(NotificationPreferences preferences)
{
    return m_pipeline.request<NotificationPreferences>(put("/notifications/preferences", preferences));
}

} // namespace stillgate
