#include "tests/desktop/ApplicationProcess.h"
#include "tests/desktop/PrivateWorld.h"
#include "tests/desktop/TrustedServer.h"
#include "tests/support/Browser.h"

#include <gmock/gmock.h>

#include <csignal>
#include <sysexits.h>

namespace stillgate::test
{

namespace
{

using testing::HasSubstr;

namespace fs = std::filesystem;

void approve(const ServerProcess& server, const std::string& page)
{
    Browser browser;
    browser.open("http://127.0.0.1:" + std::to_string(server.sitePort()) + "/src/pages/auth/signup.html");
    browser.type("#display-name", "Ada Lovelace");
    browser.type("#email", "ada@example.test");
    browser.type("#password", "a few quiet words");
    browser.follow([&] { browser.click("main button"); });
    browser.open(page);
    browser.follow([&] { browser.click("button[value=approve]"); });
}

/// The address that a program prints; empty if it doesn't.
std::string linkOf(ApplicationProcess& program)
{
    if (!program.says("Waiting for your approval"))
        return {};
    const auto output = QString::fromStdString(program.output());
    return output.section("  http", 1).section('\n', 0, 0).prepend("http").toStdString();
}

} // namespace

/// Root, as tests may be, could write the hosts file: so in a private /etc.
class SignInOnATerminal : public PrivateWorldTest
{
protected:
    const QStringList m_signIn{"--headless", "--sign-in"};
    ApplicationHome m_home;
};

TEST_F(SignInOnATerminal, storesASessionOnceTheDeviceIsApproved)
{
    const auto deployment = deploymentOfTheBuild();
    if (deployment.empty())
        GTEST_SKIP() << "built for a backend whose keys aren't here";
    TrustedServer server{deployment};
    m_home.environment.insert("STILLGATE_API_BASE_URL", QString::fromStdString(server.process().baseURL()));
    {
        ApplicationProcess program{m_home, m_signIn};
        ASSERT_THAT(linkOf(program), HasSubstr("user_code="));
        program.send(SIGINT);
        EXPECT_EQ(program.waitForEnd(), EX_TEMPFAIL) << "whoever waits may give up";
        EXPECT_FALSE(fs::exists(m_home.token("access")));
    }
    ApplicationProcess program{m_home, m_signIn};
    const auto page = linkOf(program);
    ASSERT_THAT(page, HasSubstr("user_code="));
    approve(server.process(), page);
    EXPECT_EQ(program.waitForEnd(), EX_OK);
    EXPECT_THAT(program.output(), HasSubstr("\nSigned in as Ada Lovelace.\n"));
    EXPECT_FALSE(fileBytes(m_home.token("access")).empty());
    EXPECT_FALSE(fileBytes(m_home.token("refresh")).empty());

    ApplicationProcess again{m_home, m_signIn};
    EXPECT_EQ(again.waitForEnd(), EX_OK);
    EXPECT_THAT(again.output(), HasSubstr("Already signed in on this machine.\n"));
}

TEST_F(SignInOnATerminal, withoutABackendItSaysSo)
{
    ApplicationProcess program{m_home, m_signIn};
    EXPECT_EQ(program.waitForEnd(), EX_TEMPFAIL);
    EXPECT_THAT(program.output(), HasSubstr("Signing in did not work: "));
    EXPECT_FALSE(fs::exists(m_home.token("access")));
}

} // namespace stillgate::test
