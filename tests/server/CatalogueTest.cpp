#include "Accounts/DeviceCodes.h"
#include "Backend/APIService.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "tests/server/ServerFixture.h"
#include "tests/support/Await.h"

namespace stillgate::test
{

namespace
{

constexpr std::string_view origin = "https://stillgate.example";

/// Hands the client's requests straight to the server.
class DirectTransport final : public HTTPTransport
{
public:
    DirectTransport(server::Backend& backend, server::Database& database)
        : m_backend(backend)
        , m_database(database)
    {}

    Task<Result<HTTPResponse>> send(HTTPRequest request, CancellationToken) override
    {
        const auto target = request.url.substr(origin.size());
        const auto questionMark = std::min(target.find('?'), target.size());
        server::Request taken{.method = request.method,
            .path = target.substr(0, questionMark),
            .query = target.substr(std::min(questionMark + 1, target.size())),
            .headers = {},
            .body = request.body.value_or(""),
            .address = "192.0.2.1",
            .isEncrypted = true};
        for (const auto& [name, value] : request.headers)
            taken.headers.emplace(name, value);
        auto response = m_backend.answer(taken, m_database);
        co_return HTTPResponse{.status = response.status, .contentType = response.contentType, .body = response.body};
    }

private:
    server::Backend& m_backend;
    server::Database& m_database;
};

/// The application's own client, with an account.
struct Client
{
    Client(DirectTransport& transport, const Person& person)
        : service(std::string{origin} + "/v1", transport, keychain, notifications)
    {
        service.setTokens(person.token, person.refreshToken);
    }

    MemoryFileManager files;
    KeychainService keychain{files};
    NotificationCenter notifications;
    APIService service;
};

/// The value of an operation that has to succeed.
template <class T>
T got(Task<Result<T>> task)
{
    auto result = await(std::move(task));
    if (!result)
        throw std::runtime_error{result.error().description()};
    if constexpr (!std::is_void_v<T>)
        return std::move(*result);
}

class Catalogue : public ServerTest
{
protected:
    Person adasAccount = signUp("ada");
    Person gracesAccount = signUp("grace");
    DirectTransport transport{backend, database};
    Client ada{transport, adasAccount};
    Client grace{transport, gracesAccount};

    std::string linked()
    {
        const auto code = got(grace.service.generateSharingCode());
        EXPECT_EQ(got(grace.service.getMySharingCode({})), code);
        return got(ada.service.linkWithCode(code.code)).connection.id;
    }

    static CreateTaskBody task() { return {.title = "Read", .rewardMinutes = 15, .repeatType = "once"}; }
};

STILLGATE_ON_BOTH_DATABASES(Catalogue);

TEST_P(Catalogue, signInRefreshAndGoodbye)
{
    const auto code = got(ada.service.requestDeviceCode());
    EXPECT_EQ(got(ada.service.pollDeviceCode(code.deviceCode)).status, "pending");
    server::DeviceCodes{database}.decide(code.userCode, adasAccount.id, true, time.now());
    const auto answer = got(ada.service.pollDeviceCode(code.deviceCode));
    EXPECT_EQ(answer.user->id, adasAccount.id);
    ada.service.setTokens(answer.accessToken.value(), answer.refreshToken.value());
    time.advance(std::chrono::hours{25}); // the next call is refused, refreshed and repeated
    EXPECT_EQ(got(ada.service.getMe({})).email, "ada@example.org");
    EXPECT_FALSE(got(ada.service.getAppConfig()).maintenanceMode);
    EXPECT_EQ(got(ada.service.exportUserData()).devices.size(), 2);
    got(ada.service.deleteAccount());
    EXPECT_FALSE(await(ada.service.getMe({})).has_value());
}

TEST_P(Catalogue, rulesSchedulesAndDevices)
{
    auto& service = ada.service;
    const auto rule = got(service.createBlockRule(
        {.id = "0e4fbd8e-4f2b-4e0e-8f5f-94a6ae8ef2b1", .enabled = true, .unblockPolicy = "flexible"}));
    EXPECT_EQ(got(service.getBlockRules({})), std::vector{rule});
    EXPECT_EQ(got(service.getEffectiveRules({})).rules.at(0).id, rule.id);
    got(service.deleteBlockRule(rule.id));
    const auto schedule = got(service.createSchedule(
        {.id = "x", .name = "Evenings", .scheduleType = "always", .timezone = "UTC", .ruleIds = {}, .enabled = true}));
    EXPECT_EQ(got(service.getSchedules({})), std::vector{schedule});
    got(service.deleteSchedule(schedule.id));

    const auto device = got(service.registerDevice("Desk", "macos"));
    EXPECT_EQ(ownDeviceId(got(service.getDevices({}))), device.id);
    got(service.sendHeartbeat(device.id, 3));
    EXPECT_EQ(got(service.getStreak({})).currentStreakDays, 1);
    got(service.sendDailyScreenTime({.date = "2026-01-15", .totalMinutes = 60}));
    EXPECT_EQ(got(service.getScreenTimeReport("week")).totalMinutes, 60);
    got(service.reportUsage(61));
    EXPECT_EQ(got(service.getScreenTimeBudget({})).usedMinutesToday, 61);
    got(service.registerPushToken("token", "apns", std::nullopt));
    auto preferences = got(service.getNotificationPreferences());
    preferences.dailySummary = false;
    EXPECT_EQ(got(service.updateNotificationPreferences(preferences)), preferences);
}

TEST_P(Catalogue, guardiansTasksAndGroups)
{
    const auto id = linked();
    auto& guardian = ada.service;
    const auto rule = got(guardian.createGuardianRule(id, {.category = "gaming", .enabled = true}));
    EXPECT_FALSE(got(guardian.updateGuardianRule(rule.id, {.enabled = false})).enabled);
    EXPECT_EQ(got(guardian.getControlledUsers()).at(0).guardianRules->at(0).id, rule.id);
    got(guardian.deleteGuardianRule(rule.id));
    got(guardian.setDailyLimit(id, 60));
    const auto key = got(guardian.getIllustrations()).at(0).key;
    EXPECT_EQ(got(guardian.updateConnectionSettings(id, {.blockIllustrationKey = key})).blockIllustrationKey, key);

    const auto given = got(guardian.assignGuardianTask(id, task()));
    EXPECT_EQ(got(grace.service.completeTask(given.id, std::nullopt)).status, "completed");
    EXPECT_EQ(got(guardian.rejectTask(given.id, "Again")).status, "rejected");
    got(grace.service.completeTask(given.id, TaskProof{.type = "text", .content = "done"}));
    EXPECT_EQ(got(guardian.approveTask(given.id)).status, "approved");
    EXPECT_EQ(got(grace.service.getScreenTimeBudget({})).earnedMinutesToday, 15);
    EXPECT_EQ(got(grace.service.createTask(task())).assigneeId, gracesAccount.id);
    EXPECT_EQ(got(guardian.getTasks("assigner", {})).size(), 1);
    EXPECT_FALSE(got(guardian.getTaskTemplates()).empty());
    got(grace.service.reportTampering("app_deletion_attempt", "App terminated while in permanent mode"));
    EXPECT_EQ(got(guardian.getGuardianActivity(id, 7)).at(0).eventType, "tampering_detected");

    EXPECT_EQ(got(guardian.getGroupDashboard("default")).size(), 2);
    EXPECT_EQ(got(guardian.getLeaderboardStreak("default")).size(), 2);
    EXPECT_EQ(got(guardian.getLeaderboardFocus("default", "week")).size(), 2);
    EXPECT_EQ(got(guardian.getLeaderboardScreenTime("default", "month")).size(), 2);
    EXPECT_EQ(got(grace.service.getSharingConnections({})).at(0).role, "controlled");
    got(grace.service.deleteConnection(id));
}

} // namespace

} // namespace stillgate::test
