#include "Accounts/Secrets.h"
#include "tests/server/ServerFixture.h"

#include <thread>

namespace stillgate::test
{

namespace
{

using nlohmann::json;

class APITest : public ServerTest
{};

STILLGATE_ON_BOTH_DATABASES(APITest);

TEST_P(APITest, whatCannotBeDoneIsRefusedWithTheRightStatus)
{
    const auto ada = signUp("ada");
    const std::string nul = R"({"customName":"a\u0000b","id":"x","enabled":true,"customDomains":[],)"
                            R"("excludedDomains":[],"unblockPolicy":"flexible"})";

    const struct
    {
        const char* method;
        const char* path;
        std::string body;
        int status;
    } cases[] = {
        {"GET", "", "", 404},
        {"GET", "/", "", 404},
        {"GET", "/nothing", "", 404},
        {"GET", "/tasks/", "", 404},
        {"POST", "/devices/%00/heartbeat", "{}", 400},
        {"POST", "/devices/%ff/heartbeat", "{}", 400},
        {"PATCH", "/tasks", "", 405},
        {"POST", "/block-rules", "", 400},
        {"POST", "/block-rules", "{", 400},
        {"POST", "/block-rules", "[]", 400},
        {"POST", "/block-rules", R"({"id":7})", 400},
        {"POST", "/block-rules", nul, 400},
        {"POST", "/block-rules", std::string(600, '[') + std::string(600, ']'), 400},
        {"POST", "/sharing/report-usage", R"({"usedMinutes":1441})", 400},
        {"POST", "/sharing/report-usage", R"({"usedMinutes":1e3})", 400},
        {"POST", "/screen-time/daily", R"({"date":"2026-13-01","totalMinutes":1})", 400},
        {"POST", "/screen-time/daily", R"({"date":"2026-01-17","totalMinutes":1})", 400},
        {"POST", "/screen-time/daily", R"({"date":"2026-01-15T24:00:00Z","totalMinutes":1})", 400},
        {"POST", "/guardian/tampering", R"({"eventType":"x"})", 400},
        {"POST", "/screen-time/daily",
            R"({"date":"2026-01-15","totalMinutes":1,"appUsage":[{"identifier":"a","minutes":9223372036854775807}]})",
            400},
        {"POST", "/screen-time/daily", R"({"date":"2026-01-15","totalMinutes":1,"pickupCount":-1})", 400},
        {"POST", "/tasks/x/reject", R"({"reason":")" + std::string(6000, 'a') + R"("})", 400},
        {"POST", "/auth/refresh", std::string(5000, ' '), 413},
        {"POST", "/devices", R"({"deviceName":" ","platform":"macos"})", 400},
        {"POST", "/tasks", R"({"title":"","rewardMinutes":1,"repeatType":"once","requiresProof":false})", 400},
        {"POST", "/tasks", R"({"title":"a","rewardMinutes":-1,"repeatType":"once","requiresProof":false})", 400},
        {"POST", "/tasks", R"({"title":"a","rewardMinutes":1,"repeatType":"hourly","requiresProof":false})", 400},
        {"GET", "/tasks?role=boss", "", 400},
        {"GET", "/screen-time/report", "", 400},
    };

    for (const auto& refused : cases) {
        const auto reply = call(ada, refused.method, refused.path, refused.body);
        EXPECT_EQ(reply.status, refused.status) << refused.method << ' ' << refused.path << ' ' << refused.body;
        EXPECT_TRUE(reply.body["error"].is_string());
    }
    EXPECT_THAT(log.lines, testing::IsEmpty());
}

TEST_P(APITest, accountHoldsSoMuchAndNoMore)
{
    const auto ada = signUp("ada");
    database.inTransaction([&] {
        for (int number = 0; number < 500; ++number)
            database.execute("INSERT INTO block_rules (id, user_id, enabled, custom_domains, excluded_domains, "
                             "unblock_policy, created_at, updated_at) VALUES (?, ?, 1, '[]', '[]', '', 0, 0)",
                std::to_string(number), ada.id);
    });
    json rule{{"id", ""}, {"enabled", true}, {"customDomains", json::array()}, {"excludedDomains", json::array()},
        {"unblockPolicy", "flexible"}};
    EXPECT_EQ(call(ada, "POST", "/block-rules", rule).status, 409);
    rule["customName"] = std::string(201, 'a');
    EXPECT_EQ(call(ada, "POST", "/block-rules", rule).status, 400);
}

TEST_P(APITest, strangersObjectsAreNotThere)
{
    const auto ada = signUp("ada");
    const auto grace = signUp("grace");
    const auto stranger = signUp("stranger");
    const auto connection = link(ada, grace);
    const json rule{{"id", ""}, {"enabled", true}, {"customDomains", json::array()}, {"excludedDomains", json::array()},
        {"unblockPolicy", "flexible"}};
    const json schedule{{"id", ""}, {"name", "a"}, {"scheduleType", "always"}, {"timezone", "UTC"},
        {"ruleIds", json::array()}, {"enabled", true}};
    const json guardianRule{{"enabled", true}, {"customDomains", json::array()}, {"customApps", json::object()}};
    const auto guarded = "/guardian/connections/" + connection;
    const std::string task = earn(ada, connection, grace, 5);
    const auto idOf = [](const Reply& reply) { return reply.body["id"].get<std::string>(); };

    const struct
    {
        std::string method;
        std::string path;
        json body;
    } cases[] = {
        {"DELETE", "/block-rules/" + idOf(call(ada, "POST", "/block-rules", rule)), nullptr},
        {"DELETE", "/schedules/" + idOf(call(ada, "POST", "/schedules", schedule)), nullptr},
        {"POST", "/devices/" + ada.deviceId + "/heartbeat", {{"blockedAttempts", 0}, {"blockingWasActive", true}}},
        {"DELETE", "/sharing/connections/" + connection, nullptr},
        {"PUT", guarded + "/settings", json::object()},
        {"GET", guarded + "/activity", nullptr},
        {"POST", guarded + "/rules", guardianRule},
        {"PUT", "/guardian/rules/" + idOf(call(ada, "POST", guarded + "/rules", guardianRule)), json::object()},
        {"POST", "/tasks/" + task + "/approve", nullptr},
        {"POST", "/notifications/register", {{"token", "t"}, {"platform", "apns"}, {"deviceId", ada.deviceId}}},
    };

    for (const auto& [method, path, body] : cases) {
        EXPECT_EQ(call(stranger, method, path, body).status, 404) << path;
        EXPECT_EQ(call({}, method, path, body).status, 401) << path;
        EXPECT_LT(call(ada, method, path, body).status, 410) << path;
    }
    EXPECT_EQ(call(stranger, "GET", "/tasks").body, json::array());
    EXPECT_EQ(call(stranger, "GET", "/auth/export").body["blockRules"], json::array());
}

TEST_P(APITest, whatIsStoredComesBackAsItWas)
{
    const auto ada = signUp("ada");
    const json rule{{"id", "0e4fbd8e-4f2b-4e0e-8f5f-94a6ae8ef2b1"}, {"category", "custom"},
        {"customName", "Çay'ın \"molası\" 🍵 %s; --"}, {"enabled", false}, {"customDomains", {"bücher.example"}},
        {"excludedDomains", {"a.example"}}, {"customApps", {{"macos", {{{"bundleId", "org.x"}, {"name", "X"}}}}}},
        {"unblockPolicy", "cooldown"}, {"cooldownHours", 9000000000}};
    call(ada, "POST", "/block-rules", rule);
    auto stored = call(ada, "GET", "/block-rules").body[0];
    for (const auto* key : {"createdAt", "updatedAt", "userId"})
        stored.erase(key);
    EXPECT_EQ(stored, rule);

    const json preferences{{"blockAlerts", true}, {"streakReminders", false}, {"taskNotifications", true},
        {"dailySummary", false}, {"authorityRequests", true}, {"limitWarnings", false}};
    EXPECT_EQ(call(ada, "GET", "/notifications/preferences").body["dailySummary"], true);
    EXPECT_EQ(call(ada, "PUT", "/notifications/preferences", preferences).body, preferences);
    EXPECT_EQ(call(ada, "GET", "/notifications/preferences").body, preferences);
    EXPECT_EQ(call(ada, "GET", "/tasks/templates").body.size(), 12);
    EXPECT_EQ(call(ada, "GET", "/guardian/illustrations").body.size(), 25);
}

TEST_P(APITest, operatorsSwitchboardIsFollowedAndSurvivesABrokenFile)
{
    const auto file = folder.path() / "server.toml";
    auto write = [&, age = 10](const char* text) mutable {
        putFile(file, text);
        std::filesystem::last_write_time(
            file, std::filesystem::file_time_type::clock::now() - std::chrono::hours{age--});
    };
    EXPECT_EQ(call({}, "GET", "/app-config").body, json::parse(R"({"maintenanceMode":false})"));
    write("[app-config]\nmaintenance-mode = true\nmaintenance-message = \"Back at ten\"\n");
    const auto raised = json::parse(R"({"maintenanceMode":true,"maintenanceMessage":"Back at ten"})");
    EXPECT_EQ(call({}, "GET", "/app-config").body, raised);
    for (const auto* broken : {"[app-config]\nmaintenance-mode = tr", "[app-config]\nmaintenance-mode = \"no\"",
             "[app-config]\nmaintenance_mode = false"}) {
        log.lines.clear();
        write(broken);
        EXPECT_EQ(call({}, "GET", "/app-config").body, raised) << broken;
        EXPECT_EQ(log.lines.size(), 1);
    }
    write("[app-config]\nminimum-version = \"2.0\"\n");
    EXPECT_EQ(call({}, "GET", "/app-config").body, json::parse(R"({"maintenanceMode":false,"minVersion":"2.0"})"));
}

TEST_P(APITest, transactionsThatMeetAreDoneOneAfterTheOther)
{
    database.command("CREATE TABLE counters (value BIGINT)");
    database.execute("INSERT INTO counters (value) VALUES (?)", std::int64_t{0});
    const auto count = [&] {
        server::Database own{testDatabase.location()};
        for (int turn = 0; turn < 20; ++turn) {
            own.inTransaction([&] {
                const auto value = own.number("SELECT value FROM counters");
                own.execute("UPDATE counters SET value = ?", value + 1);
            });
        }
    };
    {
        std::jthread one{count};
        std::jthread other{count};
    }
    EXPECT_EQ(database.number("SELECT value FROM counters"), 40);
    EXPECT_THROW(database.inTransaction([&] {
        database.execute("UPDATE counters SET value = 0");
        throw server::Refusal{400, "no"};
    }),
        server::Refusal);
    EXPECT_EQ(database.number("SELECT value FROM counters"), 40);
}

TEST_P(APITest, databaseOfANewerVersionIsLeftAlone)
{
    database.migrate(); // a second time changes nothing
    database.execute("INSERT INTO schema_versions (version) VALUES (?)", std::int64_t{1000});
    EXPECT_THROW(database.migrate(), std::runtime_error);
}

} // namespace

} // namespace stillgate::test
