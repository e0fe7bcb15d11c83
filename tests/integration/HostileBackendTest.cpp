#include "Backend/APIService.h"
#include "Backend/SecureSession.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryLog.h"
#include "tests/integration/TLSServer.h"
#include "tests/support/Await.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;
using testing::StartsWith;

namespace
{

constexpr auto streak = R"({"currentStreakDays":3,"longestStreakDays":4})";
constexpr std::size_t megabyte = 1 << 20;

} // namespace

/// The client as it is built into the program, and a pinned server that is broken or means harm.
class HostileBackend : public testing::Test
{
protected:
    HostileBackend() { m_service.setTokens("old", "refresh"); }

    std::string outcomeOf(const Result<Streak>& result) { return result ? "succeeded" : result.error().description(); }

    /// What getStreak makes of these bytes.
    std::string outcomeOf(const std::string& answer, TLSServer::Then then = TLSServer::Then::close)
    {
        m_server.answer = answer;
        m_server.then = then;
        m_server.received.clear();
        auto outcome = outcomeOf(await(m_service.getStreak({})));
        for (const auto& request : m_server.received) // a GET without an answer may be repeated
            EXPECT_TRUE(request.startsWith("GET /v1/stats/streak HTTP/1.1\r\n")) << "no redirect is followed";
        EXPECT_TRUE(m_service.isAuthenticated()) << "a broken answer ends no session";
        return outcome;
    }

    /// Ten requests, all of which the server answers with a 401, before it answers the refresh.
    std::vector<Result<Streak>> tenExpiredAtOnce(const std::string& answerToRefresh)
    {
        m_server.respond = [this](const QByteArray& request) -> std::optional<std::string> {
            if (request.startsWith("POST /v1/auth/refresh "))
                return std::nullopt;
            const bool isValid = request.contains("\r\nAuthorization: Bearer new\r\n");
            m_expired += isValid ? 0 : 1;
            return isValid ? httpAnswer(200, streak) : httpAnswer(401, R"({"error":"expired"})");
        };
        std::vector<Awaited<Result<Streak>>> calls;
        for (int i = 0; i < 10; ++i)
            calls.emplace_back(m_service.getStreak({}));
        while (m_expired < 10 || m_server.held.empty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        m_server.answerHeldWith(answerToRefresh);

        std::vector<Result<Streak>> results;
        for (auto& call : calls)
            results.push_back(call.result());
        return results;
    }

    Certificates& m_certificates = Certificates::shared();
    TLSServer m_server{m_certificates.chain({"ec", "intermediate"}), m_certificates.key("ec")};
    MemoryFileManager m_files;
    KeychainService m_store{m_files};
    ManualTime m_time;
    MemoryLog m_log;
    NotificationCenter m_notifications;
    int m_forcedLogouts = 0;
    int m_expired = 0;
    std::unique_ptr<Observation> m_observation = m_notifications.observe(sgForceLogout, [this] { ++m_forcedLogouts; });
    SecureSession m_session{{{m_certificates.pin("ec")}, m_certificates.pem("root")}, m_notifications, m_time, m_log};
    APIService m_service{m_server.baseURL(), m_session, m_store, m_notifications};
};

TEST_F(HostileBackend, brokenConnectionsAreNetworkErrors)
{
    const auto whole = httpAnswer(200, streak);
    const auto body = "Content-Type: application/json\r\n\r\n" + std::string{streak};
    const std::string cases[] = {
        "",
        "SSH-2.0-OpenSSH_9.2\r\n",
        "HTTP/1.1 200",
        "HTTP/1.1 200 OK\r\nContent-Type: applica",
        whole.substr(0, whole.find("\r\n\r\n") + 4),
        whole.substr(0, whole.size() - 1),
        "HTTP/1.1 200 OK\r\nContent-Length: 4611686018427387904\r\n" + body,
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2d\r\n" + std::string{streak},
    };
    for (const auto then : {TLSServer::Then::close, TLSServer::Then::reset}) {
        for (const auto& answer : cases)
            EXPECT_THAT(outcomeOf(answer, then), StartsWith("Network error: ")) << answer;
    }
}

TEST_F(HostileBackend, answersThatNobodyCanUseAreClassifiedAllTheSame)
{
    const auto page = "<html><body>Bad gateway</body></html>";
    const auto redirect = [this](int status) {
        return "HTTP/1.1 " + std::to_string(status) + " Moved\r\nLocation: " + m_server.url() +
            "\r\nContent-Length: 0\r\n\r\n";
    };

    const struct
    {
        std::string answer;
        std::string expected;
    } cases[] = {
        {httpAnswer(200, streak, "text/plain"), "Invalid response"},
        {httpAnswer(502, page, "text/html; charset=utf-8"), "Invalid response"},
        {"HTTP/1.1 502 Bad\r\n\r\n" + std::string{page}, "Unknown error"},
        {httpAnswer(200, page), "Streak: not JSON, at byte 1"},
        {httpAnswer(204, ""), "Streak: not JSON, at byte 1"},
        {httpAnswer(200, std::string(megabyte, '[')), "Streak: nested too deeply"},
        {redirect(301), "Unknown error"},
        {redirect(307), "Unknown error"},
        {httpAnswer(999, R"({"error":"No such status"})"), "No such status"},
        {"HTTP/1.1 100 Continue\r\n\r\n" + httpAnswer(200, streak), "succeeded"},
        {"HTTP/1.1 200 OK\r\n\r\n" + std::string{streak}, "succeeded"},
        {httpAnswer(200, streak) + "and more", "succeeded"},
        {"HTTP/1.1 403 No\r\nWWW-Authenticate: Negotiate\r\n" + httpAnswer(403, R"({"error":"No"})").substr(20), "No"},
    };

    for (const auto& [answer, expected] : cases)
        EXPECT_EQ(outcomeOf(answer), expected) << answer.substr(0, 200);
}

TEST_F(HostileBackend, largeAnswersAreTakenUpToALimit)
{
    const auto large = std::string(10 * megabyte, ' ') + streak;
    EXPECT_EQ(outcomeOf(httpAnswer(200, large)), "succeeded");
    EXPECT_EQ(
        outcomeOf(httpAnswer(500, R"({"error":")" + std::string(10 * megabyte, 'e') + R"("})")).size(), 10 * megabyte);
    EXPECT_EQ(outcomeOf("HTTP/1.1 200 OK\r\n\r\n" + std::string(80 * megabyte, ' ')),
        "Network error: The answer is too large");
}

TEST_F(HostileBackend, compressedAnswersAreNotUnpacked)
{
    const std::string archive{"\x1f\x8b\x08\0\0\0\0\0\0\x03\xab\xae\x05\0\x43\xbf\xa6\xa3\x02\0\0\0", 22}; // of "{}"
    const auto answer = "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n" + archive;
    EXPECT_EQ(outcomeOf(answer), "Streak: not JSON, at byte 1");
    EXPECT_TRUE(m_server.received.back().contains("\r\nAccept-Encoding: identity\r\n"));
}

TEST_F(HostileBackend, challengesOfAnySchemeLeaveTheRepairToUs)
{
    for (const auto* scheme : {"Bearer", "Basic realm=\"x\"", "Digest realm=\"x\", nonce=\"y\"", "NTLM", "Negotiate"}) {
        m_service.setTokens("old", "refresh");
        m_server.received.clear();
        m_server.respond = [scheme](const QByteArray& request) -> std::optional<std::string> {
            if (request.startsWith("POST"))
                return httpAnswer(200, R"({"accessToken":"new","refreshToken":"refresh2"})");
            if (request.contains("Bearer new"))
                return httpAnswer(200, streak);
            return "HTTP/1.1 401 No\r\nWWW-Authenticate: " + std::string{scheme} + "\r\nContent-Length: 0\r\n\r\n";
        };
        EXPECT_EQ(outcomeOf(await(m_service.getStreak({}))), "succeeded") << scheme;
        EXPECT_EQ(m_server.received.size(), 3U) << scheme;
    }
}

TEST_F(HostileBackend, tenExpiredRequestsCauseOneRefreshAndTenRetries)
{
    for (const auto& result : tenExpiredAtOnce(httpAnswer(200, R"({"accessToken":"new","refreshToken":"refresh2"})")))
        EXPECT_EQ(outcomeOf(result), "succeeded");
    EXPECT_EQ(m_server.count("POST /v1/auth/refresh"), 1);
    EXPECT_EQ(m_server.count("GET /v1/stats/streak"), 20);
    EXPECT_EQ(m_expired, 10);
    EXPECT_EQ(m_forcedLogouts, 0);
}

TEST_F(HostileBackend, tenExpiredRequestsEndTheSessionOnceWhenTheRefreshFails)
{
    for (const auto& result : tenExpiredAtOnce(httpAnswer(401, R"({"error":"revoked"})")))
        EXPECT_EQ(outcomeOf(result), "Session expired");
    EXPECT_EQ(m_server.count("POST /v1/auth/refresh"), 1);
    EXPECT_EQ(m_forcedLogouts, 1);
    EXPECT_FALSE(m_service.isAuthenticated());
}

TEST_F(HostileBackend, silenceIsGivenUpAfterAMinute)
{
    for (const auto* begun : {"", "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n\r\n{\"currentStreakDays\""}) {
        m_server.answer = begun;
        m_server.then = TLSServer::Then::stay;
        m_server.received.clear();
        Awaited call{m_service.getStreak({})};
        while (m_server.received.empty() || m_server.received.back().isEmpty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        m_time.advance(59s);
        EXPECT_FALSE(call.hasEnded());
        m_time.advance(1s);
        EXPECT_EQ(outcomeOf(call.result()), "Network error: Operation canceled");
    }
}

} // namespace stillgate
