#include "Database/Database.h"
#include "Models/BlockRules.h"
#include "Models/JSONCoding.h"
#include "tests/server/RawConnection.h"
#include "tests/server/ServerProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <thread>

namespace stillgate::test
{

using namespace std::chrono_literals;

namespace
{

/// What a device has sent, and what of it the server has acknowledged.
struct Account
{
    SignedInDevice device;
    std::set<std::string> acknowledgedRules;
    std::int64_t rulesSent = 0;
};

/// Writes as fast as the server answers, until the connection breaks.
void writeUntilKilled(Account& account, std::uint16_t port, const std::string& authority)
try {
    RawConnection connection{port, authority};
    for (;;) {
        const auto name = std::to_string(++account.rulesSent);
        connection.send(rawRequest("POST", "/v1/block-rules", account.device.token,
            R"({"id":"","category":"custom","customName":")" + name +
                R"(","enabled":true,"customDomains":["a.example"],"excludedDomains":[],"unblockPolicy":"flexible"})"));
        const auto answer = connection.answer();
        if (!answer)
            return;
        EXPECT_EQ(answer->status, 201) << answer->body;
        account.acknowledgedRules.insert(
            JSONDecoder{DateForm::iso8601}.decode<BlockRule>(answer->body).value_or(BlockRule{}).id);
    }
} catch (const std::runtime_error&) {
    // Killed before this connection was there.
}

/// Everything acknowledged is there, and nothing that was never sent.
void expectKept(const Account& account, const ServerProcess& server)
{
    RawConnection connection{server.port(), server.authority()};
    connection.send(rawRequest("GET", "/v1/block-rules", account.device.token));
    const auto answer = connection.answer().value_or(RawAnswer{});
    EXPECT_EQ(answer.status, 200) << answer.body;
    const auto rules = JSONDecoder{DateForm::iso8601}.decode<std::vector<BlockRule>>(answer.body);
    ASSERT_TRUE(rules);
    std::set<std::string> kept;
    for (const auto& rule : *rules)
        kept.insert(rule.id);
    EXPECT_TRUE(std::ranges::includes(kept, account.acknowledgedRules));
    EXPECT_LE(std::ssize(kept), account.rulesSent);
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
    for (int kill = 0; kill < 5; ++kill) {
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
}

} // namespace stillgate::test
