#include "Database/Database.h"
#include "Models/BlockRules.h"
#include "Models/JSONCoding.h"
#include "Models/ScreenTime.h"
#include "tests/server/RawConnection.h"
#include "tests/server/ServerProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <thread>

namespace stillgate::test
{

using namespace std::chrono_literals;

namespace
{

/// STILLGATE_KILLS of the environment, for a longer run.
int killsToTry()
{
    const auto* value = std::getenv("STILLGATE_KILLS");
    return value == nullptr ? 5 : std::atoi(value);
}

/// What a device has sent, and what of it the server has acknowledged.
struct Account
{
    SignedInDevice device;
    std::set<std::string> acknowledgedRules;
    std::int64_t rulesSent = 0;
    std::int64_t acknowledgedMinutes = 0;
    std::int64_t minutesSent = 0;
};

/// Writes as fast as the server answers, until the connection breaks.
void writeUntilKilled(Account& account, std::uint16_t port, const std::string& authority)
try {
    RawConnection connection{port, authority};
    const auto post = [&](const std::string& path, const std::string& body) {
        connection.send(rawRequest("POST", path, account.device.token, body));
        return connection.answer();
    };
    for (;;) {
        const auto name = std::to_string(++account.rulesSent);
        const auto rule = post("/v1/block-rules",
            R"({"id":"","category":"custom","customName":")" + name +
                R"(","enabled":true,"customDomains":["a.example"],"excludedDomains":[],"unblockPolicy":"flexible"})");
        if (!rule)
            return;
        EXPECT_EQ(rule->status, 201) << rule->body;
        account.acknowledgedRules.insert(
            JSONDecoder{DateForm::iso8601}.decode<BlockRule>(rule->body).value_or(BlockRule{}).id);

        account.minutesSent = std::min<std::int64_t>(account.minutesSent + 1, 1440);
        const auto usage =
            post("/v1/sharing/report-usage", R"({"usedMinutes":)" + std::to_string(account.minutesSent) + '}');
        if (!usage)
            return;
        EXPECT_EQ(usage->status, 200) << usage->body;
        account.acknowledgedMinutes = account.minutesSent;

        const auto beat = post("/v1/devices/" + account.device.deviceId + "/heartbeat",
            R"({"blockedAttempts":0,"blockingWasActive":true})");
        if (!beat)
            return;
        EXPECT_EQ(beat->status, 200) << beat->body;
    }
} catch (const std::runtime_error&) {
    // Killed before this connection was there.
}

/// Everything acknowledged is there, and nothing that was never sent.
void expectKept(const Account& account, const ServerProcess& server)
{
    RawConnection connection{server.port(), server.authority()};
    const auto get = [&]<class T>(const std::string& path, std::in_place_type_t<T>) {
        connection.send(rawRequest("GET", path, account.device.token));
        const auto answer = connection.answer().value_or(RawAnswer{});
        EXPECT_EQ(answer.status, 200) << answer.body;
        return JSONDecoder{DateForm::iso8601}.decode<T>(answer.body).value_or(T{});
    };
    std::set<std::string> kept;
    for (const auto& rule : get("/v1/block-rules", std::in_place_type<std::vector<BlockRule>>))
        kept.insert(rule.id);
    EXPECT_TRUE(std::ranges::includes(kept, account.acknowledgedRules));
    EXPECT_LE(std::ssize(kept), account.rulesSent);
    const auto minutes = get("/v1/sharing/budget", std::in_place_type<ScreenTimeBudget>).usedMinutesToday;
    EXPECT_GE(minutes, account.acknowledgedMinutes);
    EXPECT_LE(minutes, account.minutesSent);
}

} // namespace

TEST(Crash, losesNothingThatWasAcknowledged)
{
    ServerProcess server;
    const auto authority = server.authority();
    std::vector<Account> accounts;
    for (const auto& device : server.addDevices(4))
        accounts.push_back({.device = device});
    std::mt19937 random{7};
    std::uniform_int_distribution<int> life{1, 250}; // milliseconds
    for (int kill = 0; kill < killsToTry(); ++kill) {
        {
            std::vector<std::jthread> load;
            for (auto& account : accounts)
                load.emplace_back([&] { writeUntilKilled(account, server.port(), authority); });
            std::this_thread::sleep_for(std::chrono::milliseconds{life(random)});
            server.kill();
        }
        server.restart();
        for (const auto& account : accounts)
            expectKept(account, server);
    }
    std::size_t rules = 0;
    for (const auto& account : accounts)
        rules += account.acknowledgedRules.size();
    EXPECT_GE(rules, 1);
    server.kill();
    EXPECT_EQ(server::Database{server.database()}.first<std::string>("PRAGMA integrity_check"), "ok");
    RecordProperty("acknowledgedRules", static_cast<int>(rules));
}

} // namespace stillgate::test
