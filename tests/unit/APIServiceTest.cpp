#include "Backend/APIService.h"

#include "Backend/BaseURL.h"
#include "Backend/PublicKeyPin.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryLog.h"
#include "tests/support/Await.h"
#include "tests/support/FakeTransport.h"
#include "tests/support/Matchers.h"
#include "tests/support/Samples.h"

namespace stillgate
{

using namespace test;

class Service : public testing::Test
{
protected:
    Service() { m_service.setTokens("old", "refresh"); }

    /// A server on which only the access token "new" is valid, and which hands it out.
    void expireTheOldToken()
    {
        m_server.handlers["GET /stats/streak"] = [](const HTTPRequest& request) {
            const bool isValid = FakeTransport::header(request, "Authorization") == "Bearer new";
            return isValid ? FakeTransport::json(200, streak) : FakeTransport::json(401, R"({"error":"expired"})");
        };
        m_server.answer(
            "POST /auth/refresh", FakeTransport::json(200, R"({"accessToken":"new","refreshToken":"refresh2"})"));
    }

    Result<Streak> getStreak() { return await(m_service.getStreak({})); }

    template <class T>
    std::string failureOf(const Result<T>& result)
    {
        return result ? "succeeded" : result.error().description();
    }

    bool hasSession()
    {
        SessionTokens stored{m_store};
        stored.load();
        EXPECT_EQ(stored.access().has_value(), m_service.isAuthenticated()) << "memory and files agree";
        return m_service.isAuthenticated();
    }

    static constexpr auto streak = R"({"currentStreakDays":3,"longestStreakDays":4})";

    MemoryFileManager m_files;
    KeychainService m_store{m_files};
    FakeTransport m_server;
    NotificationCenter m_notifications;
    int m_forcedLogouts = 0;
    std::unique_ptr<Observation> m_observation = m_notifications.observe(sgForceLogout, [this] { ++m_forcedLogouts; });
    APIService m_service{FakeTransport::baseURL, m_server, m_store, m_notifications};
};

TEST_F(Service, answersAreClassified)
{
    const std::pair<Result<HTTPResponse>, std::string> cases[] = {
        {FakeTransport::json(200, streak), "succeeded"},
        {HTTPResponse{204, std::nullopt, streak}, "succeeded"},
        {HTTPResponse{200, "Application/JSON; charset=utf-8", streak}, "succeeded"},
        {HTTPResponse{200, "text/html", streak}, "Invalid response"},
        {HTTPResponse{500, "text/html", "<html>"}, "Invalid response"},
        {FakeTransport::json(404, R"({"error":"No such thing"})"), "No such thing"},
        {FakeTransport::json(503, ""), "Unknown error"},
        {FakeTransport::json(302, "{}"), "Unknown error"},
        {FakeTransport::json(200, "{}"), "Streak.currentStreakDays: required, but missing"},
        {failure(APIError::transport("Connection refused")), "Network error: Connection refused"},
    };

    for (const auto& [response, expected] : cases) {
        m_server.answer("GET /stats/streak", response);
        EXPECT_EQ(failureOf(getStreak()), expected);
        EXPECT_TRUE(hasSession());
    }
}

TEST_F(Service, requestsCarryTheirHeadersAndBodies)
{
    m_server.answer("POST /devices", FakeTransport::json(200, R"({"id":"d","deviceName":"Desk","platform":"macos",
        "isActive":true,"createdAt":"2026-01-15T08:30:00.5Z"})"));
    const auto made = await(m_service.registerDevice("Desk", "macos"));
    ASSERT_TRUE(made) << made.error().description();
    const auto& request = m_server.requests.front();
    EXPECT_EQ(request.body, R"({"deviceName":"Desk","platform":"macos"})");
    EXPECT_EQ(FakeTransport::header(request, "Content-Type"), "application/json");
    EXPECT_EQ(FakeTransport::header(request, "Origin"), "stillgate://macos");
    EXPECT_EQ(FakeTransport::header(request, "Authorization"), "Bearer old");

    m_server.answer("GET /app-config", FakeTransport::json(200, R"({"maintenanceMode":false})"));
    EXPECT_TRUE(await(m_service.getAppConfig()));
    EXPECT_EQ(FakeTransport::header(m_server.requests.back(), "Authorization"), "") << "asked without a session";
    EXPECT_EQ(m_server.requests.back().body, std::nullopt);
}

TEST_F(Service, namesAndValuesAreEncodedIntoPathAndQuery)
{
    const auto task = FakeTransport::json(
        200, R"({"id":"t","assignerId":"a","assigneeId":"b","title":"x","rewardMinutes":5,"status":"completed"})");
    m_server.answer("POST /tasks/a%20b/c%3F%23/complete", task);
    m_server.answer("POST /tasks/t/reject", task);
    m_server.answer("GET /tasks", FakeTransport::json(200, "[]"));
    m_server.answer("GET /tasks?role=assigner", FakeTransport::json(200, "[]"));
    m_server.answer("GET /leaderboard/focus?groupId=a%26b%20c&period=week", FakeTransport::json(200, "[]"));
    EXPECT_TRUE(await(m_service.completeTask("a b/c?#", std::nullopt)));
    EXPECT_EQ(m_server.requests.back().body, "{}");
    EXPECT_TRUE(await(m_service.rejectTask("t", std::nullopt)));
    EXPECT_EQ(m_server.requests.back().body, "{}");
    EXPECT_TRUE(await(m_service.getTasks(std::nullopt, {})));
    EXPECT_TRUE(await(m_service.getTasks("assigner", {})));
    EXPECT_TRUE(await(m_service.getLeaderboardFocus("a&b c", "week")));
}

TEST_F(Service, droppedAnswersHaveToDecodeAllTheSame)
{
    for (const auto& [body, succeeds] :
        {std::pair{"{}", true}, {R"({"success":true})", true}, {"", false}, {R"({"success":"yes"})", false}}) {
        m_server.answer("DELETE /block-rules/r", FakeTransport::json(200, body));
        EXPECT_EQ(await(m_service.deleteBlockRule("r")).has_value(), succeeds) << body;
    }
}

TEST_F(Service, bodyThatIsNoTextIsNotSent)
{
    EXPECT_EQ(failureOf(await(m_service.linkWithCode("\xff"))), "a text that isn't UTF-8");
    EXPECT_TRUE(m_server.requests.empty());
}

TEST_F(Service, expiredSessionIsRepairedByOneRefreshHoweverManyNotice)
{
    expireTheOldToken();
    m_server.held = std::make_shared<OneShotEvent>();
    std::vector<Awaited<Result<Streak>>> calls;
    for (int i = 0; i < 10; ++i)
        calls.emplace_back(m_service.getStreak({}));
    std::exchange(m_server.held, std::make_shared<OneShotEvent>())->happen(); // ten answers of 401; the refresh waits
    EXPECT_EQ(m_server.count("POST", "/auth/refresh"), 1);
    std::exchange(m_server.held, nullptr)->happen();
    for (auto& call : calls)
        EXPECT_TRUE(call.result());
    EXPECT_EQ(m_server.count("POST", "/auth/refresh"), 1);
    EXPECT_EQ(m_server.count("GET", "/stats/streak"), 20);
    EXPECT_EQ(m_forcedLogouts, 0);

    EXPECT_TRUE(getStreak());
    EXPECT_EQ(m_server.requests.size(), 22U) << "a later call goes out with the new token";
}

TEST_F(Service, answerOf401ThatComesLateNeedsNoRefreshOfItsOwn)
{
    expireTheOldToken();
    m_server.held = std::make_shared<OneShotEvent>();
    Awaited late{m_service.getStreak({})};
    const auto late401 = std::exchange(m_server.held, nullptr);
    EXPECT_TRUE(getStreak());
    late401->happen();
    EXPECT_TRUE(late.result());
    EXPECT_EQ(m_server.count("POST", "/auth/refresh"), 1);
}

TEST_F(Service, signOutDuringARefreshIsTheLastWord)
{
    for (const bool isRefused : {false, true}) {
        for (const bool somebodyElseSignsIn : {false, true}) {
            expireTheOldToken();
            if (isRefused)
                m_server.answer("POST /auth/refresh", FakeTransport::json(401, "{}"));
            m_service.setTokens("old", "refresh");
            m_server.held = std::make_shared<OneShotEvent>();
            Awaited call{m_service.getStreak({})};
            std::exchange(m_server.held, std::make_shared<OneShotEvent>())->happen(); // the 401; the refresh waits
            m_service.clearTokens();
            if (somebodyElseSignsIn)
                m_service.setTokens("new", "theirs");
            m_server.requests.clear();
            std::exchange(m_server.held, nullptr)->happen();
            EXPECT_EQ(failureOf(call.result()), "Session expired");
            EXPECT_TRUE(m_server.requests.empty()) << "nothing is done in another's name";
            EXPECT_EQ(hasSession(), somebodyElseSignsIn);
            EXPECT_EQ(m_forcedLogouts, 0);
        }
    }
}

TEST_F(Service, failedRefreshEndsTheSessionOnce)
{
    expireTheOldToken();
    m_server.answer("POST /auth/refresh", failure(APIError::transport("down")));
    m_server.held = std::make_shared<OneShotEvent>();
    std::vector<Awaited<Result<Streak>>> calls;
    for (int i = 0; i < 10; ++i)
        calls.emplace_back(m_service.getStreak({}));
    std::exchange(m_server.held, std::make_shared<OneShotEvent>())->happen();
    std::exchange(m_server.held, nullptr)->happen();
    for (auto& call : calls)
        EXPECT_EQ(failureOf(call.result()), "Session expired");
    EXPECT_EQ(m_server.count("POST", "/auth/refresh"), 1);
    EXPECT_EQ(m_forcedLogouts, 1);
    EXPECT_FALSE(hasSession());
}

TEST_F(Service, retryIsNotRepairedAgain)
{
    expireTheOldToken();
    m_server.answer("GET /stats/streak", FakeTransport::json(401, streak));
    EXPECT_EQ(failureOf(getStreak()), "Session expired");
    EXPECT_EQ(m_server.requests.size(), 3U);
    EXPECT_FALSE(hasSession());
    EXPECT_EQ(m_forcedLogouts, 0) << "only a failed refresh forces a logout";
}

TEST_F(Service, cancelledRetryKeepsTheSession)
{
    expireTheOldToken();
    CancellationSource source;
    m_server.answer("POST /auth/refresh", failure(APIError::transport("unset")));
    m_server.handlers["POST /auth/refresh"] = [&](const HTTPRequest&) {
        source.cancel();
        return FakeTransport::json(200, R"({"accessToken":"new","refreshToken":"refresh2"})");
    };
    EXPECT_EQ(failureOf(await(m_service.getStreak(source.token()))), "Network error: Operation canceled");
    EXPECT_TRUE(hasSession());
}

TEST_F(Service, withoutRefreshTokenA401IsAnOrdinaryAnswer)
{
    expireTheOldToken();
    m_service.clearTokens();
    EXPECT_EQ(failureOf(getStreak()), "expired");
    EXPECT_EQ(FakeTransport::header(m_server.requests.back(), "Authorization"), "");
    m_service.setTokens("old", "refresh");
    m_server.answer("GET /app-config", FakeTransport::json(401, R"({"error":"no"})"));
    EXPECT_EQ(failureOf(await(m_service.getAppConfig())), "no");
    EXPECT_TRUE(hasSession());
}

TEST(BaseURL, firstUsableCandidateIsTaken)
{
    using Candidate = std::optional<std::string>;
    const Candidate good{"https://good.example/v1"};

    const std::pair<std::vector<Candidate>, Candidate> cases[] = {
        {{std::nullopt, " \n", "https://a.example/v1//", good}, "https://a.example/v1"},
        {{"\thttps://a.example:8443/api/v1 ", good}, "https://a.example:8443/api/v1"},
        {{"HTTPS://a.example/v1", good}, "HTTPS://a.example/v1"},
        {{"https://a.example/v2", good}, good},
        {{"a.example/v1", good}, good},
        {{"https:///v1", good}, good},
        {{"http://a.example/v1", "https://a b/v1"}, std::nullopt},
    };

    MemoryLog log;
    for (const auto& [candidates, expected] : cases)
        EXPECT_EQ(resolveBaseURL(candidates, log), expected);
    EXPECT_THAT(log.lines, Contains("[Stillgate] Rejecting non-HTTPS URL: http://a.example/v1"));
}

TEST(PublicKeyPin, isThatOfAKnownKindOfKey)
{
    using Type = PublicKey::Type;
    EXPECT_EQ(PublicKeyPin::spkiHash({Type::other, "key", 256}), std::nullopt);
    EXPECT_EQ(PublicKeyPin::spkiHash({Type::ec, "key", 224}), std::nullopt);
    EXPECT_EQ(PublicKeyPin::spkiHash({Type::rsa, "", 2048}), std::nullopt);
    EXPECT_EQ(PublicKeyPin::spkiHash({Type::ec, "key", std::nullopt}), PublicKeyPin::spkiHash({Type::ec, "key", 256}));
}

} // namespace stillgate
