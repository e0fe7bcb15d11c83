#include "tests/desktop/ApplicationProcess.h"

#include "tests/desktop/PrivateWorld.h"
#include "tests/desktop/ProgramWindow.h"
#include "tests/desktop/X11TestWindow.h"

#include <QElapsedTimer>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <numeric>
#include <sysexits.h>

namespace stillgate::test
{

namespace
{

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr auto signIn = "Sign In";
constexpr auto popover = "Stillgate";
constexpr auto noDesktop = "No usable desktop";

} // namespace

/// The real program on a desktop of its own. The /etc is private too: what root starts could write the hosts file.
class Application : public PrivateWorldTest
{
protected:
    void SetUp() override
    {
        PrivateWorldTest::SetUp();
        ASSERT_NE(::getenv("STILLGATE_PRIVATE_DESKTOP"), nullptr) << "run by scripts/private-desktop: it opens windows";
        std::signal(SIGPIPE, SIG_IGN);
    }

    void TearDown() override { ::qputenv("DISPLAY", m_display); }

    /// One that runs, and whose user has signed in.
    std::unique_ptr<ApplicationProcess> signedIn()
    {
        m_home.putSession();
        auto program = std::make_unique<ApplicationProcess>(m_home);
        EXPECT_TRUE(program->says("Bootstrap failed (offline)"));
        return program;
    }

    static bool opens(const std::string& title)
    {
        return becomes([&] { return !windowTitled(title).empty(); });
    }

    static bool closes(const std::string& title)
    {
        return becomes([&] { return windowTitled(title).empty(); });
    }

    static bool comesToFront(const std::string& title)
    {
        return becomes([&] { return isInFront(title); });
    }

    QByteArray m_display = ::qgetenv("DISPLAY");
    ApplicationHome m_home;
};

TEST_F(Application, firstStartGoesToTheSignIn)
{
    ApplicationProcess program{m_home};
    EXPECT_TRUE(opens(signIn));
    EXPECT_THAT(fileBytes(m_home.settings()), HasSubstr("sg_onboarding_complete"));
    EXPECT_EQ(program.terminate(), EX_OK);
    EXPECT_THAT(program.output(), Not(HasSubstr("qrc:"))) << "no screen complains";
    EXPECT_THAT(program.output(), Not(HasSubstr(noDesktop)));
}

TEST_F(Application, secondStartBringsTheFirstForward)
{
    ApplicationProcess first{m_home};
    ASSERT_TRUE(comesToFront(signIn));
    const X11TestWindow other{"Other"};
    other.show();
    // Until it is heard: a window that comes while the sign-in asks for the keyboard is left behind.
    ASSERT_TRUE(becomes([&] {
        other.activate();
        return other.isActive();
    }));
    EXPECT_EQ(ApplicationProcess{m_home}.waitForEnd(), EX_OK);
    EXPECT_TRUE(comesToFront(signIn));

    shell("xdotool windowminimize " + windowTitled(signIn));
    ASSERT_TRUE(closes(signIn));
    EXPECT_EQ(ApplicationProcess{m_home}.waitForEnd(), EX_OK);
    EXPECT_TRUE(comesToFront(signIn));
    EXPECT_TRUE(opens(signIn));

    first.kill();
    ASSERT_TRUE(closes(signIn));
    ApplicationProcess successor{m_home};
    EXPECT_TRUE(opens(signIn)) << "the name went with the process that had it";
    EXPECT_EQ(successor.terminate(), EX_OK);
}

TEST_F(Application, signInThatWasClosedComesBack)
{
    ApplicationProcess program{m_home};
    ASSERT_TRUE(comesToFront(signIn));
    // Until it is heard: a window manager that has just started may miss a key.
    ASSERT_TRUE(becomes([] {
        shell("xdotool key --clearmodifiers alt+F4");
        return windowTitled(signIn).empty();
    }));
    EXPECT_TRUE(program.isRunning());
    EXPECT_EQ(ApplicationProcess{m_home}.waitForEnd(), EX_OK);
    EXPECT_TRUE(comesToFront(signIn));
    EXPECT_EQ(program.terminate(), EX_OK);
}

TEST_F(Application, saysWhyItDoesNotStart)
{
    for (const auto& arguments : {QStringList{"--loud"}, {"--sign-in"}, {"--headless", "--help"}, {""}}) {
        ApplicationProcess program{m_home, arguments};
        EXPECT_EQ(program.waitForEnd(), EX_USAGE) << arguments.join(' ').toStdString();
        EXPECT_THAT(program.output(), HasSubstr("see stillgate --help"));
    }
    m_home.environment.remove("DISPLAY");
    ApplicationProcess program{m_home};
    EXPECT_EQ(program.waitForEnd(), EX_UNAVAILABLE);
    EXPECT_THAT(program.output(), HasSubstr("no desktop to show windows on"));
}

TEST_F(Application, needsNoSessionBus)
{
    m_home.environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    ApplicationProcess program{m_home};
    EXPECT_TRUE(opens(signIn));
    EXPECT_EQ(program.terminate(), EX_OK);
}

TEST_F(Application, endsWithItsDesktopAndStartsOnTheNext)
{
    const ApplicationHome serversHome;
    ApplicationProcess server{serversHome, {"-c", "exec Xvfb -displayfd 1 -nolisten tcp -noreset 2>/dev/null"}, "bash"};
    ASSERT_TRUE(server.says("\n"));
    const auto display = ':' + QString::fromStdString(server.output()).section('\n', 0, 0);
    ::qputenv("DISPLAY", display.toLatin1()); // where xdotool looks
    m_home.environment.insert("DISPLAY", display);
    ApplicationProcess program{m_home};
    ASSERT_TRUE(opens(signIn));
    server.kill();
    EXPECT_TRUE(program.waitForEnd().has_value()) << "without a crash";

    ::qputenv("DISPLAY", m_display);
    m_home.environment.insert("DISPLAY", m_display);
    ApplicationProcess successor{m_home};
    EXPECT_TRUE(opens(signIn));
    EXPECT_EQ(successor.terminate(), EX_OK);
}

TEST_F(Application, engineAloneSeesTheDesktopIfThereIsOne)
{
    m_home.putSession();
    for (const bool hasDisplay : {true, false}) {
        if (!hasDisplay)
            m_home.environment.remove("DISPLAY");
        ApplicationProcess engine{m_home, {"--headless"}};
        EXPECT_TRUE(engine.says("Bootstrap failed (offline)"));
        EXPECT_EQ(engine.terminate(), EX_OK);
        const auto log = engine.output();
        EXPECT_EQ(log.contains(noDesktop), !hasDisplay);
        EXPECT_EQ(log.find(noDesktop), log.rfind(noDesktop));
    }
}

TEST_F(Application, statusItemHasAnIconAndAMenu)
{
    const StatusNotifierHost host;
    const auto program = signedIn();
    ASSERT_TRUE(becomes([&] { return host.hasItem(); }));
    EXPECT_TRUE(host.hasIcon());
    const auto menu = host.menu();
    EXPECT_EQ(menu.size(), 2U);
    EXPECT_TRUE(menu.contains("Refresh"));
    ASSERT_TRUE(menu.contains("Quit Stillgate"));
    EXPECT_THAT(windowTitled(signIn), IsEmpty()) << "there is a session";

    host.choose("Quit Stillgate");
    EXPECT_EQ(program->waitForEnd(), EX_OK);
}

TEST_F(Application, popoverOpensBesideThePointerAndGoesByItself)
{
    shell("xdotool mousemove 1270 5"); // in the corner of a screen of 1280 x 800
    const StatusNotifierHost host;
    const X11TestWindow other{"Other"};
    other.show();
    const auto program = signedIn();
    ASSERT_TRUE(becomes([&] { return host.hasItem(); }));

    ASSERT_TRUE(clickOpensPopover(host));
    const auto place = placeOf(windowTitled(popover));
    EXPECT_THAT(place, StartsWith("360x480+"));
    int x = 0;
    int y = 0;
    ASSERT_EQ(std::sscanf(place.c_str(), "360x480+%d+%d", &x, &y), 2) << place;
    EXPECT_TRUE(x >= 0 && x + 360 <= 1280 && y >= 0 && y + 480 <= 800) << place;
    shell("xdotool key Escape");
    EXPECT_TRUE(closes(popover));

    ASSERT_TRUE(clickOpensPopover(host));
    host.activate();
    EXPECT_TRUE(closes(popover));

    ASSERT_TRUE(clickOpensPopover(host));
    other.activate();
    EXPECT_TRUE(closes(popover)) << "the keyboard has gone elsewhere";
    EXPECT_TRUE(becomes([&] { return other.isActive(); }));
    EXPECT_EQ(program->terminate(), EX_OK);
}

/// Two apps of this machine that take turns in front.
class ApplicationMetering : public Application
{
protected:
    using Usage = std::map<std::string, std::int64_t>;

    [[nodiscard]] Usage usage() const
    {
        const auto text = fileBytes(m_home.usage());
        return text.empty() ? Usage{} : nlohmann::json::parse(text).at("appUsage").get<Usage>();
    }

    [[nodiscard]] static std::int64_t total(const Usage& usage)
    {
        return std::accumulate(usage.begin(), usage.end(), std::int64_t{0},
            [](std::int64_t sum, const auto& entry) { return sum + entry.second; });
    }

    static bool isBroughtToFront(const ApplicationProcess& app)
    {
        const auto pid = std::to_string(app.pid());
        return becomes([&] {
            shell("xdotool windowactivate $(xdotool search --onlyvisible --pid " + pid + ") 2>/dev/null");
            return shell("xdotool getactivewindow getwindowpid 2>/dev/null") == pid + '\n';
        });
    }

    /// Until a change of the front app has written it down: a shorter time than a second counts for nobody.
    bool takeTurnsUntil(const std::function<bool(const Usage&)>& isEnough)
    {
        return becomes([&] {
            for (const auto* app : {&m_terminal, &m_editor}) {
                QElapsedTimer second;
                second.start();
                if (!isBroughtToFront(*app) || !becomes([&] { return second.hasExpired(1100); }))
                    return false;
            }
            return isEnough(usage());
        });
    }

    ApplicationProcess m_terminal{m_home, {}, "xterm"};
    ApplicationProcess m_editor{m_home, {"--disable-server"}, "mousepad"};
};

TEST_F(ApplicationMetering, countsWhatIsInFrontAndKeepsItOverACrash)
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    const auto hasBoth = [](const Usage& usage) { return usage.size() >= 2; };
    auto program = signedIn();
    ASSERT_TRUE(isBroughtToFront(m_editor));
    ASSERT_TRUE(takeTurnsUntil(hasBoth));
    program->kill();
    const auto counted = usage();
    EXPECT_THAT(counted,
        testing::UnorderedElementsAre(
            testing::Pair("com.apple.Terminal", testing::Ge(1)), testing::Pair("org.xfce.mousepad", testing::Ge(1))));
    EXPECT_LE(total(counted), sinceStart.elapsed() / 1000);

    program = signedIn();
    ASSERT_TRUE(takeTurnsUntil([&](const Usage& usage) { return total(usage) > total(counted); }));
    EXPECT_EQ(program->terminate(), EX_OK);
    const auto after = usage();
    EXPECT_EQ(after.size(), 2U);
    for (const auto& [app, seconds] : counted)
        EXPECT_GE(after.at(app), seconds) << app;
    EXPECT_LE(total(after), sinceStart.elapsed() / 1000);
}

} // namespace stillgate::test
