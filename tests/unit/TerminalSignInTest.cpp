#include "App/TerminalSignIn.h"

#include "tests/support/AppStateFixture.h"
#include "tests/support/TextsInUse.h"

#include <sstream>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class Terminal : public AppStateFixture
{
protected:
    Terminal()
    {
        m_backend.hasStoredTokens = false;
        m_backend.answerFirstLoad();
        m_backend.me = SGUser{.id = "u1", .email = "ada@example.com"};
        m_backend.deviceCode = deviceCode("one");
        m_backend.poll = DeviceCodePollResponse{.status = "pending"};
    }

    void TearDown() override { m_time.advance(2s); } // until nothing waits for the browser

    void approve()
    {
        m_backend.poll = DeviceCodePollResponse{
            .status = "approved", .accessToken = "access", .refreshToken = "refresh", .user = *m_backend.me};
    }

    Awaited<bool> run()
    {
        m_authorization.emplace(state(), m_backend, [](const std::string&) {}, m_time, m_time, m_log);
        m_signIn.emplace(state(), *m_authorization, m_output);
        return Awaited{m_signIn->run()};
    }

    /// The sign-in has ended, and this was the last line.
    void expectEnd(Awaited<bool>& signIn, bool isSignedIn, const std::string& line)
    {
        ASSERT_TRUE(signIn.hasEnded()) << line;
        EXPECT_EQ(signIn.result(), isSignedIn) << line;
        EXPECT_THAT("\n" + m_output.str(), testing::EndsWith("\n" + line + "\n"));
    }

    std::ostringstream m_output;
    static constexpr auto link = "open\n  https://stillgate.example/link?user_code=AB-one\nwaiting\n";

private:
    TextsInUse m_texts{R"({"desktop":{"signIn":{"openLink":"open","waiting":"waiting","expired":"expired",
        "done":"done {{name}}","failed":"failed {{reason}}","alreadySignedIn":"already"}},
        "extension":{"popup":{"maintenance":"maintenance","updateMsg":"update"}}})"};
    std::optional<DeviceAuthorization> m_authorization;
    std::optional<TerminalSignIn> m_signIn;
};

TEST_F(Terminal, printsTheLinkAndWaitsForTheApproval)
{
    m_defaults.setBoolean("sg_onboarding_complete", false);
    auto signIn = run();
    EXPECT_EQ(m_output.str(), link);
    m_time.advance(30s);
    EXPECT_FALSE(signIn.hasEnded());
    approve();
    m_backend.hold("getEffectiveRules");
    m_time.advance(5s);
    EXPECT_FALSE(signIn.hasEnded()) << "the engine that starts next finds a complete cache";
    m_backend.release("getEffectiveRules");
    expectEnd(signIn, true, "done ada@example.com");
    EXPECT_TRUE(m_defaults.boolean("sg_onboarding_complete"));
    EXPECT_TRUE(m_files.contains(cacheFile));
}

TEST_F(Terminal, sessionOfBeforeIsEnough)
{
    m_backend.hasStoredTokens = true;
    auto signIn = run();
    expectEnd(signIn, true, "already");
    EXPECT_THAT(m_backend.calls, Not(Contains("requestDeviceCode")));
}

TEST_F(Terminal, tellsWhyThereIsNoSession)
{
    m_backend.deviceCode->verificationUrl = "";
    auto withoutAPage = run();
    m_time.advance(2s);
    expectEnd(withoutAPage, false, "failed errors.generic");

    m_backend.deviceCode = FakeBackend::unreachable();
    auto withoutACode = run();
    expectEnd(withoutACode, false, "failed Network error: unreachable");

    m_backend.deviceCode = deviceCode("one");
    m_backend.poll = failure(APIError::server(403, "Not here"));
    auto refused = run();
    expectEnd(refused, false, "failed Not here");
}

TEST_F(Terminal, codeThatRunsOutEndsIt)
{
    auto signIn = run();
    m_time.advance(60s);
    expectEnd(signIn, false, "expired");
}

TEST_F(Terminal, gatesAreToldInTheWordsOfTheBackend)
{
    const std::pair<AppConfig, std::string> cases[] = {
        {{.maintenanceMode = true, .maintenanceMessage = "Back\x1b[2J at\nnine"}, "Back [2J at nine"},
        {{.minVersion = "2.0", .forceUpdateMessage = "Please update"}, "Please update"},
        {{.minVersion = "2.0"}, "update"},
    };

    for (const auto& [configuration, line] : cases) {
        m_backend.appConfig = configuration;
        auto signIn = run();
        expectEnd(signIn, false, line);
        EXPECT_THAT(m_backend.calls, Not(Contains("requestDeviceCode")));
    }
}

TEST_F(Terminal, gateThatRisesMeanwhileEndsIt)
{
    auto signIn = run();
    approve();
    m_backend.appConfig = AppConfig{.maintenanceMode = true};
    m_time.advance(5s);
    expectEnd(signIn, false, "maintenance");
}

} // namespace stillgate
