#include "App/DeviceAuthorization.h"

#include "tests/support/AppStateFixture.h"

#include <limits>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class DeviceSignIn : public AppStateFixture
{
protected:
    DeviceSignIn()
    {
        m_backend.hasStoredTokens = false;
        m_backend.answerFirstLoad();
        m_backend.me = ada;
        m_backend.deviceCode = deviceCode("one");
        m_backend.poll = DeviceCodePollResponse{.status = "pending"};
    }

    void TearDown() override { m_time.advance(2s); } // the browser opens, or has been

    static DeviceCodePollResponse approval()
    {
        return {.status = "approved", .accessToken = "access", .refreshToken = "refresh", .user = ada};
    }

    DeviceAuthorization& authorization()
    {
        if (!m_authorization)
            m_authorization.emplace(
                state(), m_backend, [this](const std::string& url) { m_opened.push_back(url); }, m_time, m_time, m_log);
        return *m_authorization;
    }

    void appear() { authorization().resumeOrStartDeviceAuth(); }

    [[nodiscard]] auto count(const std::string& call) const { return std::ranges::count(m_backend.calls, call); }

    void expectWaiting()
    {
        EXPECT_FALSE(authorization().isExpired);
        EXPECT_EQ(authorization().deviceAuthErrorMessage.value(), std::nullopt);
    }

    void expectSignedIn()
    {
        EXPECT_THAT(m_backend.storedTokens, ElementsAre("access", "refresh"));
        EXPECT_TRUE(state().isAuthenticated);
        EXPECT_EQ(state().currentUser.value(), ada);
        EXPECT_EQ(authorization().deviceCode.value(), std::nullopt);
        expectWaiting();
    }

    static inline const SGUser ada{.id = "u1", .email = "ada@example.com"};
    std::vector<std::string> m_opened;

private:
    std::optional<DeviceAuthorization> m_authorization;
};

TEST_F(DeviceSignIn, pollsAtOnceAndOpensTheBrowserTwoSecondsLater)
{
    appear();
    EXPECT_THAT(m_backend.calls, ElementsAre("requestDeviceCode", "pollDeviceCode one"));
    m_time.advance(1999ms);
    EXPECT_THAT(m_opened, IsEmpty());
    m_time.advance(1ms);
    EXPECT_THAT(m_opened, ElementsAre("https://stillgate.example/link?user_code=AB-one"));
    m_time.advance(2999ms);
    EXPECT_EQ(count("pollDeviceCode one"), 1);

    m_backend.poll = approval();
    m_time.advance(1ms);
    expectSignedIn();
    EXPECT_THAT(m_log.lines, ElementsAre("[Stillgate] Signed in")) << "and no token";
    m_time.advance(60s);
    EXPECT_EQ(count("pollDeviceCode one"), 2);
    EXPECT_THAT(m_opened, SizeIs(1));
}

TEST_F(DeviceSignIn, keepsToAnIntervalThatATimerCanTake)
{
    const struct
    {
        std::int64_t interval;
        int pollsInAMinute; ///< the first one among them
    } cases[] = {{7, 9}, {1, 61}, {0, 61}, {-5, 61}, {std::numeric_limits<std::int64_t>::max(), 1}};

    for (const auto& [interval, polls] : cases) {
        m_backend.calls.clear();
        auto answer = deviceCode("one");
        answer.interval = interval;
        answer.expiresIn = std::numeric_limits<std::int64_t>::max();
        m_backend.deviceCode = answer;
        authorization().loadDeviceCode();
        m_time.advance(60s);
        EXPECT_EQ(count("pollDeviceCode one"), polls) << interval;
    }
}

TEST_F(DeviceSignIn, slowAnswerIsNotAskedForTwice)
{
    m_backend.hold("requestDeviceCode");
    appear();
    authorization().loadDeviceCode();
    appear();
    EXPECT_TRUE(authorization().isRequestingDeviceCode);
    EXPECT_THAT(m_backend.calls, ElementsAre("requestDeviceCode"));

    m_backend.hold("pollDeviceCode one");
    m_backend.release("requestDeviceCode");
    EXPECT_FALSE(authorization().isRequestingDeviceCode);
    m_time.advance(20s);
    EXPECT_EQ(count("pollDeviceCode one"), 1);
    m_backend.release("pollDeviceCode one");
    m_time.advance(5s);
    EXPECT_EQ(count("pollDeviceCode one"), 2);
}

TEST_F(DeviceSignIn, codeThatCannotBeHadIsAskedForAgain)
{
    m_backend.deviceCode = FakeBackend::unreachable();
    appear();
    EXPECT_EQ(authorization().deviceAuthErrorMessage.value(), "Network error: unreachable");
    EXPECT_FALSE(authorization().isRequestingDeviceCode);
    m_time.advance(60s);
    EXPECT_THAT(m_backend.calls, ElementsAre("requestDeviceCode"));

    m_backend.deviceCode = deviceCode("two");
    authorization().loadDeviceCode();
    expectWaiting();
    EXPECT_EQ(count("pollDeviceCode two"), 1);
}

TEST_F(DeviceSignIn, whatEndsTheWaitIsToldInWords)
{
    using Answer = Result<DeviceCodePollResponse>;

    const struct
    {
        Answer answer;
        bool isExpired;
        std::optional<std::string> message;
    } cases[] = {
        {DeviceCodePollResponse{.status = "denied"}, false, "errors.permissionDenied"},
        {failure(APIError::server(403, "Not your device")), false, "Not your device"},
        {failure(APIError::server(403, "")), false, "errors.generic"},
        {failure(APIError::server(404, "No such code")), true, std::nullopt},
        {failure(APIError::server(500, "Too busy")), false, "Too busy"},
        {failure(DecodingFailure{"status", "missing"}), false, "status: missing"},
        {DeviceCodePollResponse{.status = "approved", .accessToken = "access", .refreshToken = "refresh"}, false,
            "errors.generic"},
    };

    for (const auto& [answer, isExpired, message] : cases) {
        m_backend.poll = answer;
        m_backend.calls.clear();
        authorization().loadDeviceCode();
        EXPECT_EQ(authorization().isExpired.value(), isExpired);
        EXPECT_EQ(authorization().deviceAuthErrorMessage.value(), message);
        m_time.advance(60s);
        EXPECT_EQ(count("pollDeviceCode one"), 1) << message.value_or("expired");
    }
    EXPECT_THAT(m_backend.storedTokens, IsEmpty());
    EXPECT_FALSE(state().isAuthenticated);
}

TEST_F(DeviceSignIn, codeRunsOutByTheClockOfThisMachine)
{
    m_backend.poll = DeviceCodePollResponse{.status = "unheard-of"};
    appear();
    m_time.advance(59s);
    EXPECT_EQ(count("pollDeviceCode one"), 12);
    expectWaiting();
    m_time.advance(1s);
    EXPECT_TRUE(authorization().isExpired);
    EXPECT_EQ(count("pollDeviceCode one"), 12) << "nothing is asked for an expired code";
    m_time.advance(60s);
    EXPECT_EQ(count("pollDeviceCode one"), 12);

    m_backend.deviceCode = deviceCode("two");
    appear();
    expectWaiting();
    EXPECT_EQ(count("pollDeviceCode two"), 1);
}

TEST_F(DeviceSignIn, screenThatComesBackGoesOnWithItsCode)
{
    appear();
    m_time.advance(2s);
    authorization().stopPolling();
    m_time.advance(20s);
    EXPECT_EQ(count("pollDeviceCode one"), 1);
    appear();
    EXPECT_EQ(count("pollDeviceCode one"), 2);
    m_time.advance(5s);
    EXPECT_EQ(count("pollDeviceCode one"), 3);
    EXPECT_EQ(count("requestDeviceCode"), 1);
    EXPECT_THAT(m_opened, SizeIs(1));

    m_backend.poll = FakeBackend::unreachable();
    m_time.advance(5s);
    m_backend.poll = approval();
    appear();
    expectSignedIn();
}

TEST_F(DeviceSignIn, approvalCountsWhenItsScreenIsGone)
{
    m_backend.hold("pollDeviceCode one");
    appear();
    authorization().stopPolling();
    m_backend.poll = approval();
    m_backend.release("pollDeviceCode one");
    expectSignedIn();
}

TEST_F(DeviceSignIn, answerForACodeGivenUpHarmsNoNewerOne)
{
    using Answer = Result<DeviceCodePollResponse>;
    for (const auto& answer : {Answer{FakeBackend::unreachable()}, Answer{failure(APIError::server(404, ""))},
             Answer{DeviceCodePollResponse{.status = "denied"}}}) {
        m_backend.deviceCode = deviceCode("one");
        m_backend.hold("pollDeviceCode one");
        authorization().loadDeviceCode();
        m_backend.deviceCode = deviceCode("two");
        m_backend.poll = DeviceCodePollResponse{.status = "pending"};
        authorization().loadDeviceCode();
        m_backend.calls.clear();
        m_backend.poll = answer;
        m_backend.release("pollDeviceCode one");
        expectWaiting();
        m_backend.poll = DeviceCodePollResponse{.status = "pending"};
        m_time.advance(5s);
        EXPECT_EQ(count("pollDeviceCode two"), 1);
    }
}

TEST_F(DeviceSignIn, approvalOfAnOlderCodeGivesUpTheNewerOne)
{
    m_backend.hold("pollDeviceCode one");
    appear();
    m_time.advance(2s);
    m_opened.clear();
    m_backend.deviceCode = deviceCode("two");
    m_backend.hold("requestDeviceCode");
    authorization().loadDeviceCode();
    m_backend.poll = approval();
    m_backend.release("pollDeviceCode one");
    expectSignedIn();

    m_backend.release("requestDeviceCode");
    m_time.advance(60s);
    expectSignedIn();
    EXPECT_FALSE(authorization().isRequestingDeviceCode);
    EXPECT_EQ(count("pollDeviceCode two"), 0);
    EXPECT_THAT(m_opened, IsEmpty()) << "nobody has to approve anything any more";
}

TEST_F(DeviceSignIn, signOutStartsAfresh)
{
    m_backend.poll = approval();
    appear();
    expectSignedIn();
    state().logout();
    m_backend.poll = DeviceCodePollResponse{.status = "pending"};
    m_backend.deviceCode = deviceCode("two");
    appear();
    EXPECT_EQ(count("requestDeviceCode"), 2);
    EXPECT_EQ(count("pollDeviceCode two"), 1);
    expectWaiting();
}

TEST_F(DeviceSignIn, thatBringsNoSessionSaysSo)
{
    m_backend.poll = approval();
    m_backend.streak = failure(APIError::unauthorized());
    appear();
    EXPECT_EQ(authorization().deviceAuthErrorMessage.value(), "errors.generic");
    EXPECT_FALSE(state().isAuthenticated);

    m_backend.appConfig = AppConfig{.maintenanceMode = true};
    appear();
    expectWaiting();
    EXPECT_TRUE(state().isMaintenanceMode) << "which has a window of its own";
}

TEST_F(DeviceSignIn, approvalPageNamesTheCode)
{
    const struct
    {
        std::string url;
        std::optional<std::string> complete;
        std::optional<std::string> page;
    } cases[] = {
        {"https://a.example/link", std::nullopt, "https://a.example/link?user_code=A%2BB%20%26%3D"},
        {"https://a.example/link?lang=en&x=%20#top", std::nullopt,
            "https://a.example/link?lang=en&x=%20&user_code=A%2BB%20%26%3D#top"},
        {"https://a.example/link", "https://b.example/c?code=1", "https://b.example/c?code=1"},
        {"https://a.example/link", "http://b example", "https://a.example/link?user_code=A%2BB%20%26%3D"},
        {"https://a.example/link", "javascript:alert(1)", "https://a.example/link?user_code=A%2BB%20%26%3D"},
        {"", std::nullopt, std::nullopt},
        {"file:///etc/passwd", "link", std::nullopt},
    };

    for (const auto& [url, complete, page] : cases) {
        auto answer = deviceCode("one");
        answer.userCode = "A+B &=";
        answer.verificationUrl = url;
        answer.verificationUrlComplete = complete;
        EXPECT_EQ(DeviceAuthorization::approvalPage(answer), page) << url;
    }
}

TEST_F(DeviceSignIn, userOpensTheBrowserAgain)
{
    authorization().openBrowser();
    appear();
    m_time.advance(2s);
    authorization().openBrowser();
    EXPECT_THAT(m_opened, SizeIs(2));

    auto broken = deviceCode("two");
    broken.verificationUrl = "";
    m_backend.deviceCode = broken;
    authorization().loadDeviceCode();
    authorization().openBrowser();
    EXPECT_EQ(authorization().deviceAuthErrorMessage.value(), "errors.generic");
    EXPECT_THAT(m_opened, SizeIs(2));
}

} // namespace stillgate
