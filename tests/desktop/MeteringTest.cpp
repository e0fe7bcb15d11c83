#include "Platform/Linux/Desktop/X11Workspace.h"
#include "Platform/Linux/LinuxScheduler.h"
#include "tests/desktop/RunningApplication.h"
#include "tests/support/Await.h"

#include <QProcess>
#include <gmock/gmock.h>

#include <map>

namespace stillgate::test
{

namespace
{

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Pair;

constexpr auto terminal = "com.apple.Terminal"; // what xterm is on every computer of the account
constexpr auto editor = "org.xfce.mousepad";

/// A program of this machine with a window, ended with this object.
class RealApp
{
public:
    RealApp(const QString& program, const QString& windowClass)
    {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(program, {});
        m_window = xdotool({"search", "--sync", "--onlyvisible", "--class", windowClass}).section('\n', 0, 0);
    }

    ~RealApp()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    RealApp(const RealApp&) = delete;
    RealApp& operator=(const RealApp&) = delete;

    void bringToFront() const { xdotool({"windowactivate", m_window}); }

    void makeIcon() const { xdotool({"windowminimize", m_window}); }

private:
    static QString xdotool(const QStringList& arguments)
    {
        QProcess process;
        process.start("xdotool", arguments);
        process.waitForFinished(10'000);
        return process.readAllStandardOutput();
    }

    QProcess m_process;
    QString m_window;
};

} // namespace

/// Real apps in front on a real desktop, and a real server; the time is the test's.
class Metering : public testing::Test
{
protected:
    Metering()
        : m_device(m_server.addDevices(1).front())
    {
        m_computer.defaults.setBoolean("sg_onboarding_complete", true);
        start();
        m_engine->backend.setTokens(m_device.token, "none");
        bootstrap();
    }

    void start()
    {
        m_engine.reset(new Engine{.machine = machineOn(m_computer, m_notifications, m_workspace),
            .baseURL = m_server.baseURL(),
            .trust = trustIn(m_server)});
    }

    void bootstrap()
    {
        forgetCache();
        await(m_engine->state.bootstrap());
        EXPECT_TRUE(m_engine->state.isAuthenticated && !m_engine->state.isOffline);
        EXPECT_TRUE(becomes([this] { return m_engine->state.knowsGuardian; }));
    }

    /// The program ends without a chance to store anything, as by kill -9, and starts again.
    void restart()
    {
        start();
        bootstrap();
    }

    void forgetCache() { m_computer.files.files.erase(cacheFile); }

    bool isInFront(const std::optional<std::string>& app)
    {
        return becomes([&] {
            const auto front = m_workspace.frontmostApplication();
            return (front ? front->bundleIdentifier() : std::nullopt) == app;
        });
    }

    /// In steps of five minutes, after each of which the beat and the refresh behind it have come to their end.
    void letPass(std::chrono::minutes time)
    {
        for (; time > 0min; time -= 5min) {
            forgetCache();
            m_computer.time.advance(5min);
            ASSERT_TRUE(becomes([this] { return m_computer.files.contains(cacheFile); }));
        }
    }

    std::map<std::string, std::int64_t> minutesOnTheServer()
    {
        std::map<std::string, std::int64_t> minutes;
        const auto report = await(m_engine->backend.getScreenTimeReport("day")).value();
        for (const auto& app : report.days.at(0).appUsage.value())
            minutes[app.identifier] = app.minutes;
        return minutes;
    }

    [[nodiscard]] std::int64_t secondsOf(const std::string& app) const
    {
        const auto& usage = m_engine->tracker.appUsage.value();
        const auto found = usage.find(app);
        return found != usage.end() ? found->second : 0;
    }

    static constexpr auto cacheFile = "/home/ada/.local/share/com.stillgate.macos/cache/state.dat";

    ServerProcess m_server;
    SignedInDevice m_device;
    Computer m_computer;
    NotificationCenter m_notifications;
    DesktopEntries m_entries{DesktopEntries::standardDataFolders()};
    LinuxScheduler m_scheduler;
    X11Workspace m_workspace{X11Connection::open(), X11Connection::open(), m_entries, m_scheduler, m_computer.log};
    std::unique_ptr<Engine> m_engine;
    RealApp m_xterm{"xterm", "XTerm"};
    RealApp m_mousepad{"mousepad", "Mousepad"};
};

TEST_F(Metering, anHourOfRealAppsReachesTheServerAsItWas)
{
    auto& time = m_computer.time;
    m_xterm.bringToFront();
    ASSERT_TRUE(isInFront(terminal));
    letPass(20min);
    time.setCivilTime(time.now() - 1h); // the user sets the clock back, and forth again
    letPass(5min);
    time.setCivilTime(time.now() + 1h);

    m_mousepad.bringToFront();
    ASSERT_TRUE(isInFront(editor));
    letPass(10min);
    restart();
    time.setCivilTime(time.now() + 2h); // the machine sleeps: the monotonic clock stands
    letPass(5min);

    m_mousepad.makeIcon();
    m_xterm.makeIcon();
    ASSERT_TRUE(isInFront(std::nullopt));
    letPass(10min);
    m_xterm.bringToFront();
    ASSERT_TRUE(isInFront(terminal));
    letPass(10min);
    EXPECT_THAT(minutesOnTheServer(), ElementsAre(Pair(terminal, 35), Pair(editor, 15)));

    time.advance(29s);
    restart();
    EXPECT_EQ(secondsOf(terminal), 35 * 60)
        << "of what was in front when the program was killed, 30 s at most are lost";
    time.advance(31s);
    restart();
    EXPECT_GE(secondsOf(terminal), 35 * 60 + 30);
}

TEST_F(Metering, aNewDayBeginsAtNothing)
{
    auto& time = m_computer.time;
    const auto midnight = std::chrono::ceil<std::chrono::days>(time.now());
    m_xterm.bringToFront();
    ASSERT_TRUE(isInFront(terminal));
    letPass(10min);
    time.setCivilTime(midnight - 10s);
    time.advance(40s);
    EXPECT_LE(secondsOf(terminal), 30);
    time.advance(60s);
    EXPECT_GE(secondsOf(terminal), 60);
    EXPECT_LE(secondsOf(terminal), 90);
}

} // namespace stillgate::test
