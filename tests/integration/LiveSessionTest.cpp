#include "Backend/APIService.h"
#include "Backend/SecureSession.h"
#include "tests/integration/TLSServer.h"
#include "tests/support/AppStateFixture.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

/// AppState with the client that the program has, and a server.
class LiveSession : public AppStateFixture
{
protected:
    LiveSession()
    {
        m_service.setTokens("access", "refresh");
        m_server.respond = answerTo;
    }

    Backend& backend() override { return *m_client; }

    static std::optional<std::string> answerTo(const QByteArray& request)
    {
        if (request.startsWith("GET /v1/app-config "))
            return httpAnswer(200, R"({"maintenanceMode":false})");
        if (request.startsWith("GET /v1/stats/streak "))
            return httpAnswer(200, R"({"currentStreakDays":3,"longestStreakDays":4})");
        if (request.startsWith("GET /v1/block-rules "))
            return httpAnswer(200, R"([{"id":"r","enabled":true,"customDomains":["served.example"],
                "excludedDomains":[],"unblockPolicy":"flexible"}])");
        if (request.startsWith("GET /v1/devices ") || request.startsWith("GET /v1/schedules "))
            return httpAnswer(200, "[]");
        return httpAnswer(500, R"({"error":"Not today"})");
    }

    [[nodiscard]] bool hasStoredTokens() const { return m_store.load("sg_access_token").has_value(); }

    Certificates& m_certificates = Certificates::shared();
    TLSServer m_server{m_certificates.chain({"ec", "intermediate"}), m_certificates.key("ec")};
    KeychainService m_store{m_files};
    SecureSession m_session{{{m_certificates.pin("ec")}, m_certificates.pem("root")}, m_notifications, m_time, m_log};
    APIService m_service{m_server.baseURL(), m_session, m_store, m_notifications};
    APIService* m_client = &m_service;
};

TEST_F(LiveSession, signOutWhileTenRequestsHangIsTheLastWord)
{
    bootstrap();
    expectFlags(true, false);
    EXPECT_THAT(blockedNames(), Contains("served.example"));

    m_server.respond = [](const QByteArray&) { return std::nullopt; };
    std::vector<Awaited<>> refreshes;
    for (int i = 0; i < 3; ++i)
        refreshes.emplace_back(state().refreshData());
    Awaited own{m_service.getBlockRules({})}; // of no session: it isn't cancelled
    while (m_server.held.size() < 10)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    state().logout();
    m_server.answerHeldWith(httpAnswer(401, R"({"error":"expired"})"));
    for (auto& refresh : refreshes)
        refresh.result();
    EXPECT_FALSE(own.result());

    expectFlags(false, false);
    EXPECT_THAT(state().blockRules.value(), IsEmpty());
    EXPECT_THAT(blockedNames(), IsEmpty());
    EXPECT_FALSE(m_files.read(cacheFile));
    EXPECT_FALSE(hasStoredTokens());
    EXPECT_EQ(m_server.count("POST /v1/auth/refresh"), 0);
    EXPECT_FALSE(areTimersRunning());
}

TEST_F(LiveSession, serverWithoutAPinIsASignOutAndAnUntrustedOneIsNot)
{
    const struct
    {
        const char* pinned;
        const char* trusted;
        bool endsSession;
    } cases[] = {{"rsa", "root", true}, {"ec", "other-root", false}};

    for (const auto& [pinned, trusted, endsSession] : cases) {
        m_service.setTokens("access", "refresh");
        SecureSession session{
            {{m_certificates.pin(pinned)}, m_certificates.pem(trusted)}, m_notifications, m_time, m_log};
        APIService client{m_server.baseURL(), session, m_store, m_notifications};
        m_client = &client;
        int pinFailures = 0;
        const auto observation = m_notifications.observe(sgCertificatePinningFailed, [&] { ++pinFailures; });
        bootstrap();
        m_time.advance(0ms);
        expectFlags(!endsSession, !endsSession);
        EXPECT_EQ(hasStoredTokens(), !endsSession);
        EXPECT_EQ(pinFailures, endsSession ? 2 : 0) << "the configuration and the first load";
        restart();
    }
}

} // namespace stillgate
