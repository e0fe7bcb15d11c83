#include "Backend/SecureSession.h"

#include "Platform/Linux/LinuxScheduler.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryLog.h"
#include "tests/integration/TLSServer.h"
#include "tests/support/Await.h"

#include <QSslCertificate>
#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class Secure : public testing::Test
{
protected:
    /// A session that trusts the first authority and holds these pins.
    SecureSession session(const std::set<std::string>& pins)
    {
        return SecureSession{{pins, certificates.pem("root")}, m_notifications, m_time, m_log};
    }

    Result<HTTPResponse> get(SecureSession& session, const std::string& url)
    {
        return await(session.send({"GET", url, {}, std::nullopt}, {}));
    }

    /// What a session with the pin of one certificate makes of a server with a chain of certificates.
    bool isAccepted(
        const std::vector<std::string>& chain, const std::string& pinned, const std::string& host = "localhost")
    {
        m_log.lines.clear();
        TLSServer server{certificates.chain(chain), certificates.key(chain.front())};
        auto client = session({certificates.pin(pinned)});
        const auto response = get(client, server.url(host));
        for (const auto& bytes : server.received)
            EXPECT_EQ(bytes.isEmpty(), !response) << "no byte of a request reaches a server that is refused";
        EXPECT_TRUE(response || response.error().description().starts_with("Network error: "));
        return response.has_value();
    }

    /// Whether the session was ended since the last question.
    bool wasEnded() { return std::exchange(m_pinFailures, 0) == 1; }

    Certificates& certificates = Certificates::shared();
    ManualTime m_time;
    MemoryLog m_log;
    NotificationCenter m_notifications;
    int m_pinFailures = 0;
    std::unique_ptr<Observation> m_observation =
        m_notifications.observe(sgCertificatePinningFailed, [this] { ++m_pinFailures; });
};

TEST_F(Secure, pinOnAnyKeyOfTheVerifiedChainHolds)
{
    for (const auto* leaf : {"ec", "p384", "rsa"})
        EXPECT_TRUE(isAccepted({leaf, "intermediate"}, leaf)) << leaf << ": as openssl computes the pin";
    EXPECT_TRUE(isAccepted({"ec", "intermediate"}, "intermediate"));
    EXPECT_TRUE(isAccepted({"ec", "intermediate"}, "root")) << "which the server doesn't send";
    EXPECT_TRUE(isAccepted({"of-ed25519", "ed25519"}, "root")) << "an unknown kind of key is passed over";
    EXPECT_TRUE(isAccepted({"ec", "intermediate"}, "ec", "127.0.0.1"));

    const auto pin = certificates.pin("ec");
    certificates.issue("ec", "");
    EXPECT_TRUE(isAccepted({"ec", "intermediate"}, "ec")) << "renewed, with the same key";
    EXPECT_EQ(certificates.pin("ec"), pin);
    EXPECT_THAT(m_log.lines, IsEmpty());
    EXPECT_FALSE(wasEnded());
}

TEST_F(Secure, trustedServerWithoutAPinEndsTheSession)
{
    EXPECT_FALSE(isAccepted({"ec", "intermediate"}, "rsa"));
    EXPECT_THAT(m_log.lines, ElementsAre("[Stillgate] Certificate pin mismatch. Rejecting connection."));
    EXPECT_TRUE(wasEnded());

    EXPECT_FALSE(isAccepted({"ec", "intermediate", "rsa"}, "rsa"))
        << "a pinned certificate that is only appended proves nothing";
    EXPECT_TRUE(wasEnded());
}

TEST_F(Secure, untrustedServerIsRefusedAndNoMore)
{
    const struct
    {
        std::vector<std::string> chain;
        const char* why;
    } cases[] = {
        {{"stranger"}, "another authority"},
        {{"stranger", "root", "ec"}, "another authority, with ours appended"},
        {{"ec"}, "no way to the authority"},
        {{"other-name", "intermediate"}, "another host's"},
        {{"alone"}, "its own authority"},
        {{"expired", "intermediate"}, "no longer valid"},
    };

    certificates.issue("expired", "openssl ecparam -name prime256v1 -genkey -noout", -1);

    for (const auto& [chain, why] : cases) {
        EXPECT_FALSE(isAccepted(chain, chain.front())) << why;
        EXPECT_THAT(m_log.lines, ElementsAre(StartsWith("[Stillgate] TLS trust evaluation failed: "))) << why;
        EXPECT_FALSE(wasEnded()) << why;
    }
}

TEST_F(Secure, pinOfEveryKindOfKeyIsWhatOpensslComputes)
{
    certificates.issue("rsa4096", "openssl genrsa 4096");
    certificates.issue("p521", "openssl ecparam -name secp521r1 -genkey -noout");
    const ServerTrust trust{certificates.pem("root")};
    for (const auto* name : {"rsa", "rsa4096", "ec", "p384", "p521"}) {
        std::vector<std::string> sent;
        for (const auto& certificate :
            QSslCertificate::fromData(QByteArray::fromStdString(certificates.chain({name, "intermediate"}))))
            sent.push_back(certificate.toDer().toStdString());
        const auto keys = trust.evaluate(sent, "localhost");
        ASSERT_TRUE(keys) << name << ": " << keys.error();
        ASSERT_EQ(keys->size(), 3U);
        EXPECT_EQ(PublicKeyPin::spkiHash(keys->front()), certificates.pin(name)) << name;
    }
}

TEST_F(Secure, answersComeBackAsTheyAre)
{
    TLSServer server{certificates.chain({"ec", "intermediate"}), certificates.key("ec")};
    auto client = session({certificates.pin("ec")});
    server.answer = "HTTP/1.1 418 No\r\nContent-Type: text/plain\r\nSet-Cookie: a=b\r\nContent-Length: 3\r\n\r\na\xff"
                    "b";
    const auto refused = get(client, server.url());
    ASSERT_TRUE(refused) << refused.error().description();
    EXPECT_EQ(refused->status, 418);
    EXPECT_EQ(refused->contentType, "text/plain");
    EXPECT_EQ(refused->body,
        "a\xff"
        "b");

    server.answer = "HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\nContent-Length: 0\r\n\r\n";
    EXPECT_EQ(get(client, server.url())->status, 302) << "no redirect is followed";
    EXPECT_EQ(get(client, server.url())->contentType, std::nullopt);
    for (const auto& request : server.received) {
        EXPECT_TRUE(request.startsWith("GET /v1/thing HTTP/1.1\r\n"));
        EXPECT_TRUE(request.contains("\r\nAccept: application/json\r\n"));
        EXPECT_FALSE(request.contains("Cookie")) << "no cookie is kept";
    }
}

TEST_F(Secure, requestGoesOutOnceWhateverTheServerDoes)
{
    for (const auto* answer : {"", "HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n{}"}) {
        for (const auto& body : {std::optional<std::string>{R"({"a":1})"}, std::optional<std::string>{}}) {
            TLSServer server{certificates.chain({"ec", "intermediate"}), certificates.key("ec")};
            auto client = session({certificates.pin("ec")});
            EXPECT_TRUE(await(client.send({"POST", server.url(), {}, body}, {})));
            EXPECT_TRUE(server.received.back().endsWith(QByteArray::fromStdString("\r\n\r\n" + body.value_or(""))));

            server.answer = answer;
            EXPECT_FALSE(await(client.send({"POST", server.url(), {}, body}, {}))) << "an answer that breaks off";
            EXPECT_EQ(server.received.size(), 2U);
        }
    }
}

TEST_F(Secure, hangingServerIsGivenUpAfterAMinuteOrOnCancellation)
{
    TLSServer server{certificates.chain({"ec", "intermediate"}), certificates.key("ec")};
    server.answer = "";
    server.then = TLSServer::Then::stay;
    auto client = session({certificates.pin("ec")});
    const auto hasArrived = [&] { return !server.received.empty() && !server.received.back().isEmpty(); };
    const auto wait = [&] {
        while (!hasArrived())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    };

    Awaited slow{client.send({"GET", server.url(), {}, std::nullopt}, {})};
    wait();
    m_time.advance(59s);
    EXPECT_FALSE(slow.hasEnded());
    m_time.advance(1s);
    EXPECT_FALSE(slow.result());

    server.received.clear();
    CancellationSource source;
    Awaited cancelled{client.send({"GET", server.url(), {}, std::nullopt}, source.token())};
    wait();
    source.cancel();
    EXPECT_EQ(cancelled.result().error(), Error{APIError::transport("Operation canceled")});
    EXPECT_FALSE(await(client.send({"GET", server.url(), {}, std::nullopt}, source.token())));
}

TEST_F(Secure, serverThatIsNotThereIsANetworkError)
{
    auto client = session({certificates.pin("ec")});
    EXPECT_TRUE(get(client, "https://127.0.0.1:1/v1").error().description().starts_with("Network error: "));
    EXPECT_FALSE(get(client, "http://127.0.0.1:1/v1")) << "and nothing is ever sent in the clear";
}

} // namespace stillgate
