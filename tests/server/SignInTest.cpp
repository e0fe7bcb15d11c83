#include "Accounts/DeviceCodes.h"
#include "tests/server/ServerFixture.h"

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;

class SignInTest : public ServerTest
{
protected:
    Reply refresh(const std::string& token) { return call({}, "POST", "/auth/refresh", {{"refreshToken", token}}); }

    int statusWith(const std::string& accessToken) { return call({.token = accessToken}, "GET", "/auth/me").status; }

    Reply poll(const nlohmann::json& code)
    {
        return call({}, "POST", "/auth/device-code/poll", {{"device_code", code["deviceCode"]}});
    }

    bool decide(const nlohmann::json& code, const Person& person, bool isApproved)
    {
        return server::DeviceCodes{database}.decide(code["userCode"], person.id, isApproved, time.now());
    }
};

STILLGATE_ON_BOTH_DATABASES(SignInTest);

TEST_P(SignInTest, accessTokenLastsADayAndARefreshGivesANewPair)
{
    const auto ada = signUp("ada");
    EXPECT_EQ(statusWith(ada.token), 200);
    EXPECT_EQ(statusWith(ada.token + "x"), 401);
    EXPECT_EQ(statusWith(ada.refreshToken), 401);
    time.advance(24h);
    EXPECT_EQ(statusWith(ada.token), 401);

    const auto pair = refresh(ada.refreshToken);
    ASSERT_EQ(pair.status, 200);
    EXPECT_EQ(statusWith(pair.body["accessToken"]), 200);
    EXPECT_EQ(refresh("no token").status, 401);
    time.advance(180 * 24h);
    EXPECT_EQ(refresh(pair.body["refreshToken"]).status, 401);
}

TEST_P(SignInTest, lostAnswerIsGivenAgainForAMinute)
{
    const auto ada = signUp("ada");
    const auto pair = refresh(ada.refreshToken);
    time.advance(60s);
    EXPECT_EQ(refresh(ada.refreshToken).body, pair.body);
    EXPECT_EQ(refresh(pair.body["refreshToken"]).status, 200);
}

TEST_P(SignInTest, reusedRefreshTokenEndsTheWholeSignInAndNoOther)
{
    const auto ada = signUp("ada");
    const auto grace = signUp("grace");
    const auto second = refresh(ada.refreshToken).body;
    const auto third = refresh(second["refreshToken"]).body;
    // Within the minute, but its successor has been used: somebody else has it.
    EXPECT_EQ(refresh(ada.refreshToken).status, 401);
    EXPECT_EQ(statusWith(third["accessToken"]), 401);
    EXPECT_EQ(refresh(third["refreshToken"]).status, 401);
    EXPECT_EQ(statusWith(grace.token), 200);

    const auto next = refresh(grace.refreshToken).body;
    time.advance(61s);
    EXPECT_EQ(refresh(grace.refreshToken).status, 401);
    EXPECT_EQ(statusWith(next["accessToken"]), 401);
}

TEST_P(SignInTest, databaseHoldsNoTokenInTheClear)
{
    const auto ada = signUp("ada");
    const std::string next = refresh(ada.refreshToken).body["refreshToken"];
    for (const auto* table : {"access_tokens", "refresh_tokens"}) {
        for (const auto& digest : database.all<std::string>(std::string{"SELECT digest FROM "} + table)) {
            for (const auto& token : {ada.token, ada.refreshToken, next})
                EXPECT_NE(digest, token);
        }
    }
    for (const auto& salt : database.all<std::optional<std::string>>("SELECT rotation_salt FROM refresh_tokens"))
        EXPECT_NE(salt, next);
}

TEST_P(SignInTest, deviceCodeIsToldOnceAfterItsApproval)
{
    const auto ada = signUp("ada");
    const auto code = call({}, "POST", "/auth/device-code").body;
    EXPECT_EQ(code["verificationUrl"], "https://stillgate.example/device");
    EXPECT_EQ(poll(code).body, nlohmann::json::parse(R"({"status":"pending"})"));
    ASSERT_TRUE(decide(code, ada, true));
    EXPECT_FALSE(decide(code, ada, true));

    const auto answer = poll(code);
    EXPECT_EQ(answer.body["status"], "approved");
    EXPECT_EQ(answer.body["user"]["id"], ada.id);
    EXPECT_EQ(statusWith(answer.body["accessToken"]), 200);
    EXPECT_EQ(poll(code).status, 404);

    // The sign-in has a device of its own, which comes first for it and is named by it.
    const Person there{.token = answer.body["accessToken"]};
    const auto named = call(there, "POST", "/devices", {{"deviceName", "Kitchen"}, {"platform", "macos"}}).body;
    const auto devices = call(there, "GET", "/devices").body;
    ASSERT_EQ(devices.size(), 2);
    EXPECT_EQ(devices[0], named);
    EXPECT_EQ(devices[0]["deviceName"], "Kitchen");
    EXPECT_EQ(devices[1]["id"], ada.deviceId);
    EXPECT_EQ(call(ada, "GET", "/devices").body[0]["id"], ada.deviceId);
}

TEST_P(SignInTest, deviceCodeThatIsDeniedOrLateLetsNobodyIn)
{
    const auto ada = signUp("ada");
    const auto denied = call({}, "POST", "/auth/device-code").body;
    EXPECT_TRUE(decide(denied, ada, false));
    EXPECT_EQ(poll(denied).body["status"], "denied");
    EXPECT_FALSE(decide(denied, ada, true));

    const auto late = call({}, "POST", "/auth/device-code").body;
    time.advance(std::chrono::seconds{late["expiresIn"]});
    EXPECT_FALSE(decide(late, ada, true));
    EXPECT_EQ(poll(late).status, 404);
    EXPECT_EQ(poll({{"deviceCode", "no code"}}).status, 404);
}

TEST_P(SignInTest, wrongSharingCodesLockTheAccountAndTheAddressForAWhile)
{
    auto ada = signUp("ada");
    auto grace = signUp("grace");
    const auto owner = signUp("owner");
    const auto code = call(owner, "POST", "/sharing/generate").body["code"];
    const auto tryCode = [&](const Person& person, const nlohmann::json& text) {
        return call(person, "POST", "/sharing/link", {{"code", text}}).status;
    };
    for (int attempt = 0; attempt < 5; ++attempt)
        EXPECT_EQ(tryCode(ada, "WRONGONE"), 404);
    EXPECT_EQ(tryCode(ada, code), 429);
    EXPECT_EQ(tryCode(grace, code), 429); // from the same address
    grace.address = "198.51.100.7";
    ada.address = grace.address;
    EXPECT_EQ(tryCode(ada, code), 429); // the same account from another one
    EXPECT_EQ(tryCode(grace, code), 201);
    // One customer's network has more addresses than anybody has tries.
    auto eve = signUp("eve");
    for (int attempt = 0; attempt < 6; ++attempt) {
        eve.address = "2001:db8:1:2::" + std::to_string(attempt);
        EXPECT_EQ(tryCode(eve, "WRONGONE"), attempt < 5 ? 404 : 429);
    }
    time.advance(15min);
    EXPECT_EQ(tryCode(ada, "WRONGONE"), 404);
}

TEST_P(SignInTest, deletedAccountTakesItsTokensAndItsPlaceInOtherFamilies)
{
    const auto ada = signUp("ada");
    const auto grace = signUp("grace");
    const auto connection = link(ada, grace);
    earn(ada, connection, grace, 30);
    EXPECT_EQ(call(ada, "DELETE", "/auth/account").body, nlohmann::json::parse(R"({"success":true})"));
    EXPECT_EQ(statusWith(ada.token), 401);
    EXPECT_EQ(refresh(ada.refreshToken).status, 401);
    EXPECT_EQ(call(grace, "GET", "/sharing/connections").body.size(), 0);
    EXPECT_EQ(call(grace, "GET", "/tasks").body.size(), 0);
}

} // namespace

} // namespace stillgate::test
