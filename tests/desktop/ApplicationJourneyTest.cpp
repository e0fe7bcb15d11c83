#include "tests/desktop/RunningApplication.h"
#include "tests/support/Await.h"
#include "tests/support/Browser.h"

#include <gmock/gmock.h>

#include <fstream>

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto authWindow = "Sign In";

} // namespace

/// A person at a computer, with a server and a browser.
class Journey : public testing::Test
{
protected:
    void start()
    {
        m_application = std::make_unique<RunningApplicationProcess>(m_computer, m_server);
        m_application->start();
    }

    /// Only while nothing waits for the server: what waits would find nobody any more.
    void quit() { m_application.reset(); }

    AppState& state() { return m_application->state(); }

    [[nodiscard]] static bool isOpen(const QString& title)
    {
        return RunningApplicationProcess::window(title) != nullptr;
    }

    /// The design's own half second, after which the windows have followed the session.
    void letTheWatchLook() { m_computer.time.advance(500ms); }

    [[nodiscard]] bool hasCode() { return m_application->authorization().deviceCode.value().has_value(); }

    void signUpInBrowser()
    {
        m_browser.open("http://127.0.0.1:" + std::to_string(m_server.sitePort()) + "/src/pages/auth/signup.html");
        m_browser.type("#display-name", "Ada Lovelace");
        m_browser.type("#email", "ada@example.test");
        m_browser.type("#password", "a few quiet words");
        m_browser.follow([this] { m_browser.click("main button"); });
    }

    void decideInBrowser(const std::string& decision)
    {
        m_browser.open(m_computer.workspace.openedURLs.back());
        m_browser.follow([&] { m_browser.click("button[value=" + decision + "]"); });
    }

    /// From a running application without a session to one with it.
    void signIn()
    {
        letTheWatchLook();
        ASSERT_TRUE(becomes([this] { return hasCode(); }));
        m_computer.time.advance(2s);
        decideInBrowser("approve");
        m_computer.time.advance(5s);
        ASSERT_TRUE(becomes([this] { return hasLoaded(); }));
        letTheWatchLook();
    }

    /// The session is up, and nothing of its start is under way any more.
    [[nodiscard]] bool hasLoaded()
    {
        return state().isAuthenticated && state().knowsGuardian && state().currentUser.value().has_value();
    }

    /// The server follows this part of its configuration while it runs.
    void configureServer(const std::string& appConfig)
    {
        const auto file = m_server.folder() / "server.toml";
        if (m_originalConfig.empty())
            m_originalConfig = fileBytes(file);
        const auto section = m_originalConfig.find("\n[app-config]\n");
        std::ofstream{file} << m_originalConfig.substr(0, section) << "\n[app-config]\n" << appConfig;
    }

    /// Five minutes, with all that they set going: a beat, a look at the configuration, and at last a refresh, whose
    /// end shows in the cache.
    void letABeatPass()
    {
        m_computer.files.files.erase(cacheFile);
        m_computer.time.advance(300s);
        ASSERT_TRUE(becomes([this] { return m_computer.files.contains(cacheFile); }));
    }

    static constexpr auto cacheFile = "/home/ada/.local/share/com.stillgate.macos/cache/state.dat";
    ServerProcess m_server;
    Computer m_computer;
    std::unique_ptr<RunningApplicationProcess> m_application;
    Browser m_browser; // runs the event loop until it has ended, and the application may still wait for the server

private:
    std::string m_originalConfig;
};

TEST_F(Journey, aPersonSignsInComesBackAndSignsOut)
{
    signUpInBrowser();
    start();
    EXPECT_EQ(m_application->statusItem().text, "Stillgate");
    EXPECT_FALSE(isOpen(authWindow));
    letTheWatchLook();
    EXPECT_TRUE(isOpen(authWindow)) << "a first start goes to the sign-in";
    ASSERT_TRUE(becomes([this] { return hasCode(); }));
    m_computer.time.advance(1999ms);
    EXPECT_THAT(m_computer.workspace.openedURLs, IsEmpty());
    m_computer.time.advance(1ms);
    EXPECT_THAT(m_computer.workspace.openedURLs, ElementsAre(HasSubstr("user_code=")));

    decideInBrowser("approve");
    m_computer.time.advance(5s);
    ASSERT_TRUE(becomes([this] { return hasLoaded(); }));
    letTheWatchLook();
    EXPECT_FALSE(isOpen(authWindow));
    EXPECT_EQ(state().currentUser.value()->email, "ada@example.test");
    EXPECT_THAT(state().devices.value(), SizeIs(1));

    quit();
    m_computer.workspace.openedURLs.clear();
    start();
    ASSERT_TRUE(becomes([this] { return hasLoaded(); }));
    letTheWatchLook();
    EXPECT_FALSE(isOpen(authWindow)) << "the tokens have survived";

    state().logout();
    letTheWatchLook();
    EXPECT_TRUE(isOpen(authWindow));
    const KeychainService stored{m_computer.files};
    EXPECT_EQ(stored.load("sg_access_token"), std::nullopt);
    EXPECT_EQ(stored.load("sg_refresh_token"), std::nullopt);
}

TEST_F(Journey, aDeniedDeviceIsToldAndMayTryAgain)
{
    signUpInBrowser();
    start();
    letTheWatchLook();
    ASSERT_TRUE(becomes([this] { return hasCode(); }));
    m_computer.time.advance(2s);
    decideInBrowser("deny");
    m_computer.time.advance(5s);
    auto& authorization = m_application->authorization();
    ASSERT_TRUE(becomes([&] { return authorization.deviceAuthErrorMessage.value().has_value(); }));
    EXPECT_FALSE(state().isAuthenticated);

    const auto denied = authorization.deviceCode.value()->deviceCode;
    authorization.loadDeviceCode();
    ASSERT_TRUE(becomes([&] { return hasCode() && authorization.deviceCode.value()->deviceCode != denied; }));
    EXPECT_EQ(authorization.deviceAuthErrorMessage.value(), std::nullopt);
}

TEST_F(Journey, gatesOfTheServerComeAndGo)
{
    signUpInBrowser();
    start();
    signIn();
    configureServer("maintenance-mode = true\nmaintenance-message = \"Back at nine\"\n");
    letABeatPass();
    letTheWatchLook();
    EXPECT_TRUE(isOpen("Maintenance"));
    EXPECT_TRUE(state().isAuthenticated) << "the session goes on behind it";
    configureServer("maintenance-mode = false\n");
    letABeatPass();
    letTheWatchLook();
    EXPECT_FALSE(isOpen("Maintenance"));
    EXPECT_FALSE(isOpen(authWindow));

    configureServer("minimum-version = \"2.0\"\nupdate-url = \"https://stillgate.example/get\"\n");
    letABeatPass();
    letTheWatchLook();
    EXPECT_TRUE(isOpen("Update Required"));
    configureServer("minimum-version = \"1.4\"\n");
    letABeatPass();
    letTheWatchLook();
    EXPECT_FALSE(state().requiresForceUpdate);
    EXPECT_TRUE(isOpen("Update Required")) << "until the program is started anew";
}

TEST_F(Journey, whatWasInFrontArrivesAtTheServer)
{
    signUpInBrowser();
    start();
    signIn();
    m_computer.workspace.installed = {{"org.mozilla.firefox", "Firefox", {}}};
    m_computer.workspace.bringToFront("org.mozilla.firefox");
    for (int beat = 0; beat < 4; ++beat)
        letABeatPass();
    m_computer.workspace.bringToFront("com.apple.Terminal");
    letABeatPass();
    const auto report = await(m_application->engine().backend.getScreenTimeReport("day")).value();
    EXPECT_EQ(report.totalMinutes, 25);
    ASSERT_THAT(report.days, SizeIs(1));
    const auto apps = report.days.front().appUsage.value();
    ASSERT_THAT(apps, SizeIs(2));
    EXPECT_EQ(apps.front().name, "Firefox");
    EXPECT_EQ(apps.front().minutes, 20);
}

} // namespace stillgate::test
