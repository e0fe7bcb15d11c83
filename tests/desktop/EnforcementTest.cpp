#include "tests/desktop/ApplicationProcess.h"
#include "tests/desktop/PrivateWorld.h"
#include "tests/desktop/TrustedServer.h"

#include <QTemporaryFile>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>

namespace stillgate::test
{

namespace
{

using testing::HasSubstr;

constexpr auto blockScreen = "Stillgate";
constexpr auto terminal = "com.apple.Terminal";
constexpr auto editor = "org.xfce.mousepad";

QStringList chromium(const std::filesystem::path& profile, const QString& address)
{
    return {"--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
        "--disable-component-update", "--disable-sync", QString::fromStdString("--user-data-dir=" + profile.string()),
        address};
}

} // namespace

/// The whole program with real apps and a real backend, in an /etc of its own.
class Enforcement : public PrivateWorldTest
{
protected:
    void SetUp() override
    {
        PrivateWorldTest::SetUp();
        const auto deployment = deploymentOfTheBuild();
        if (deployment.empty())
            GTEST_SKIP() << "built for a backend whose keys aren't here";
        m_server.emplace(deployment);
        m_device = m_server->process().addDevices(1).front();
        m_home.environment.insert("STILLGATE_API_BASE_URL", QString::fromStdString(m_server->process().baseURL()));
        m_home.putSession();
        putFile(m_home.token("access"), scrambled(m_device.token));
    }

    /// As the program stores its tokens: against a casual look alone.
    static std::string scrambled(std::string token)
    {
        for (char& byte : token)
            byte = static_cast<char>(byte ^ 0x5a);
        return token;
    }

    void post(const std::string& path, const nlohmann::json& body)
    {
        const auto status = shell("curl --silent --output /dev/null --write-out '%{http_code}' --cacert '" +
            (m_server->process().folder() / "authority.pem").string() + "' --header 'Authorization: Bearer " +
            m_device.token + "' --header 'Content-Type: application/json' --data-binary '" + body.dump() + "' " +
            m_server->process().baseURL() + path);
        EXPECT_THAT(status, testing::StartsWith("2")) << path;
    }

    void makeRule(const std::vector<std::string>& apps, const std::vector<std::string>& domains,
        const std::string& policy, const std::string& category = "custom")
    {
        nlohmann::json list = nlohmann::json::array();
        for (const auto& app : apps)
            list.push_back({{"bundleId", app}, {"name", app}});
        post("/block-rules",
            {{"id", ""}, {"category", category}, {"customName", "Mine"}, {"enabled", true}, {"customDomains", domains},
                {"excludedDomains", nlohmann::json::array()}, {"customApps", {{"macos", list}}},
                {"unblockPolicy", policy}});
    }

    /// Starts the program, and waits until it watches.
    void start()
    {
        m_program.emplace(m_home);
        EXPECT_TRUE(m_program->says("[DNSProxy]")) << "the monitor starts once it is known that there is no proxy";
    }

    [[nodiscard]] static bool isScreenUp() { return !windowTitled(blockScreen).empty(); }

    [[nodiscard]] static bool screenComes()
    {
        return becomes([] { return isScreenUp(); });
    }

    [[nodiscard]] static bool screenGoes()
    {
        return becomes([] { return !isScreenUp(); });
    }

    static void press(const std::string& key) { shell("xdotool key " + key); }

    /// The window of an app, also when it is put away.
    [[nodiscard]] static std::string windowOf(const ApplicationProcess& app)
    {
        return shell(
            "xdotool search --pid " + std::to_string(app.pid()) + " --class . 2>/dev/null | tail -n 1 | tr -d '\\n'");
    }

    [[nodiscard]] static bool isHidden(const std::string& window)
    {
        return shell("xdotool search --onlyvisible --class . 2>/dev/null").find(window) == std::string::npos;
    }

    ApplicationHome m_home;
    TemporaryFolder m_folder;
    std::optional<TrustedServer> m_server;
    SignedInDevice m_device;
    std::optional<ApplicationProcess> m_program;
};

TEST_F(Enforcement, flexibleBlockHidesTheAppAndKeepsTheWork)
{
    makeRule({terminal}, {}, "flexible");
    start();
    ApplicationProcess app{m_home, {}, "xterm"};
    ASSERT_TRUE(screenComes());
    const auto window = windowOf(app);
    EXPECT_TRUE(becomes([&] { return isHidden(window); }));

    press("alt+F4");
    press("super+d");
    shell("xdotool windowquit " + windowTitled(blockScreen));
    shell("xdotool windowunmap " + windowTitled(blockScreen));
    EXPECT_TRUE(screenComes()) << "nothing but its own buttons closes it";
    shell("xdotool windowkill 0 2>/dev/null; true");
    press("Escape");
    EXPECT_TRUE(screenGoes());
    EXPECT_TRUE(app.isRunning());
    EXPECT_TRUE(isHidden(window));

    for (int i = 0; i < 3; ++i) {
        shell("xdotool windowactivate " + window);
        EXPECT_TRUE(screenComes()) << "it is still forbidden";
        press("Return");
        EXPECT_TRUE(screenGoes());
    }
    EXPECT_TRUE(app.isRunning());
    EXPECT_EQ(m_program->terminate(), 0);
}

TEST_F(Enforcement, strictBlockEndsAnAppThatDoesNotObey)
{
    ApplicationProcess app{m_home, {"--disable-server"}, "mousepad"};
    ASSERT_TRUE(becomes([&] { return !windowOf(app).empty(); }));
    EXPECT_TRUE(becomes([&] {
        shell("xdotool windowactivate " + windowOf(app) + " type work");
        return windowTitled("[*].*Mousepad") == windowOf(app);
    })) << "there is something that isn't saved";
    makeRule({editor}, {}, "permanent");
    start();
    EXPECT_TRUE(screenComes()) << "it was in front at the start";
    EXPECT_TRUE(becomes([&] { return !app.isRunning(); }));
    press("Escape");
    EXPECT_TRUE(screenGoes());

    ApplicationProcess again{m_home, {"--disable-server"}, "mousepad"};
    EXPECT_TRUE(screenComes());
    EXPECT_TRUE(becomes([&] { return !again.isRunning(); }));
    EXPECT_EQ(m_program->terminate(), 0);
    EXPECT_TRUE(screenGoes());
}

TEST_F(Enforcement, blockedSiteIsRefusedAndBringsUpTheScreen)
{
    makeRule({}, {"video.example"}, "flexible");
    start();
    EXPECT_TRUE(becomes([] { return fileBytes("/etc/hosts").contains("127.0.0.1 www.video.example\n"); }));
    EXPECT_THAT(shell("getent ahostsv4 m.video.example"), HasSubstr("127.0.0.1"));
    ApplicationProcess browser{
        m_home, chromium(m_folder.path() / "profile", "http://www.video.example/watch"), "chromium"};
    EXPECT_TRUE(screenComes());
    press("Escape");
    EXPECT_TRUE(screenGoes());
    EXPECT_TRUE(screenComes()) << "the tab stays, and so does the block";
    EXPECT_TRUE(browser.isRunning());
    press("Escape");
    EXPECT_TRUE(screenGoes());
    press("ctrl+w");
    EXPECT_EQ(m_program->terminate(), 0);
}

/// Deletes of lines, of the whole file, of its block: by a program that is no friend.
TEST_F(Enforcement, damagedBlockIsBackWithinASecond)
{
    makeRule({}, {"video.example"}, "flexible");
    start();
    const auto intact = [] {
        return becomes(
            [] { return fileBytes("/etc/hosts").ends_with("127.0.0.1 www.video.example\n# End Stillgate\n"); });
    };
    EXPECT_TRUE(intact());
    const auto original = fileBytes("/etc/hosts");
    for (const auto* damage : {"sed -i /video/d /etc/hosts", "rm /etc/hosts", ": >/etc/hosts",
             "sed -i 's/127.0.0.1 video/10.0.0.1 video/' /etc/hosts", "echo 10.0.0.1 mine >>/etc/hosts"}) {
        shell(damage);
        EXPECT_TRUE(becomes([&] { return fileBytes("/etc/hosts").contains("127.0.0.1 www.video.example\n"); }))
            << damage;
    }
    EXPECT_THAT(fileBytes("/etc/hosts"), HasSubstr("10.0.0.1 mine\n"));
}

} // namespace stillgate::test
