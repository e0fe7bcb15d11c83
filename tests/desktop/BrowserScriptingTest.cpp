#include "Platform/Linux/Desktop/AccessibilityBrowserScripting.h"
#include "Platform/WebAddress.h"
#include "tests/desktop/X11Fixture.h"
#include "tests/support/Await.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace stillgate
{

using namespace test;
using testing::IsEmpty;

namespace
{

/// A web site: every page is called by its path.
class Site
{
public:
    Site()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            auto* socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                const auto path = socket->readAll().split(' ').value(1);
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n<title>Page " +
                    path + "</title><iframe src='data:text/html,<p>inside'></iframe>");
                socket->disconnectFromHost();
            });
        });
    }

    [[nodiscard]] std::string address(const std::string& host, const std::string& path) const
    {
        return "http://" + host + ":" + std::to_string(m_server.serverPort()) + path;
    }

private:
    QTcpServer m_server;
};

} // namespace

/// Real browsers in real windows, asked over a real accessibility bus.
class BrowserScriptingOn : public X11
{
protected:
    void SetUp() override
    {
        X11::SetUp();
        putEntry("chromium", "");
        putEntry("firefox-esr", "");
        EXPECT_TRUE(becomes([&] { return m_browsers.canAsk("org.mozilla.firefox"); }));
    }

    /// The browser in front, asked until it gives the address.
    void expectAddress(const std::string& browser, const std::string& address)
    {
        std::string answer = "no answer";
        EXPECT_TRUE(becomes([&] {
            answer = addressIn(browser);
            return answer == address;
        })) << answer
            << " instead of " << address;
    }

    /// A browser that is busy with its new tab may not hear all that is typed: then it is typed again.
    void visit(const std::string& browser, const std::string& address, const std::string& shown)
    {
        EXPECT_TRUE(becomes([&] {
            go(address);
            const QDeadlineTimer aWhile{std::chrono::seconds{2}};
            (void)becomes([&] { return aWhile.hasExpired() || addressIn(browser) == shown; });
            return addressIn(browser) == shown;
        })) << addressIn(browser)
            << " instead of " << shown;
    }

    void visit(const std::string& browser, const std::string& address) { visit(browser, address, address); }

    std::string addressIn(const std::string& browser)
    {
        const auto front = m_workspace->frontmostApplication();
        if (!front || front->bundleIdentifier() != browser)
            return "another app is in front";
        return await(m_browsers.addressOfFrontTab(front)).value_or("no answer");
    }

    static void press(const QString& key) { QProcess::execute("xdotool", {"key", key}); }

    static void go(const std::string& address)
    {
        press("ctrl+l");
        QProcess::execute("xdotool", {"type", "--delay", "1", QString::fromStdString(address)});
        press("Return");
    }

    [[nodiscard]] QStringList chromium(const std::string& profile, const std::string& address)
    {
        return {"chromium", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync",
            "--host-resolver-rules=MAP *.test 127.0.0.1",
            QString::fromStdString("--user-data-dir=" + (m_folder.path() / profile).string()),
            QString::fromStdString(address)};
    }

    /// Prints the process that has it.
    inline static const std::string accessibilityBus =
        "dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / "
        "org.freedesktop.DBus.GetConnectionUnixProcessID string:org.a11y.Bus 2>/dev/null | awk '{ print $2 }'";

    static constexpr auto chromiumId = "org.chromium.Chromium";
    static constexpr auto firefoxId = "org.mozilla.firefox";

    Site m_site;
    AccessibilityBrowserScripting m_browsers{m_log};
};

TEST_F(BrowserScriptingOn, chromiumTellsItsFrontTab)
{
    Program browser{chromium("profile", m_site.address("one.test", "/a"))};
    expectAddress(chromiumId, m_site.address("one.test", "/a"));
    press("ctrl+t");
    visit(chromiumId, m_site.address("two.test", "/b"));
    press("ctrl+1");
    expectAddress(chromiumId, m_site.address("one.test", "/a"));

    visit(chromiumId, "refused.test:81/path", "http://refused.test:81/path");

    press("ctrl+shift+n");
    EXPECT_TRUE(becomes(
        [&] { return m_workspace->frontmostApplication()->frontWindowTitle().value_or("").contains("Incognito"); }));
    visit(chromiumId, m_site.address("three.test", "/c"));
    EXPECT_THAT(m_log.lines, IsEmpty());
}

TEST_F(BrowserScriptingOn, busThatHasEndedIsLookedForAgain)
{
    EXPECT_TRUE(becomes([&] { return !shell(accessibilityBus).empty(); }));
    shell("kill -KILL $(" + accessibilityBus + ")");
    Program browser{chromium("profile", m_site.address("one.test", "/a"))};
    expectAddress(chromiumId, m_site.address("one.test", "/a"));
}

TEST_F(BrowserScriptingOn, firefoxTellsItsFrontTab)
{
    const auto profile = QString::fromStdString((m_folder.path() / "profile").string());
    putFile(m_folder.path() / "profile" / "user.js",
        "user_pref('browser.aboutwelcome.enabled', false);\nuser_pref('datareporting.policy.dataSubmissionEnabled', "
        "false);\n");
    Program browser{{"firefox-esr", "--new-instance", "--profile", profile,
        QString::fromStdString(m_site.address("localhost", "/a"))}};
    expectAddress(firefoxId, m_site.address("localhost", "/a"));
    press("ctrl+t");
    visit(firefoxId, m_site.address("127.0.0.1", "/b"));
    visit(firefoxId, "http://localhost:81/refused");
    visit(firefoxId, "view-source:" + m_site.address("localhost", "/a"), m_site.address("localhost", "/a"));
    visit(firefoxId, "about:reader?url=http%3A%2F%2Flocalhost%3A81%2Fb", "http://localhost:81/b");

    press("ctrl+shift+p");
    EXPECT_TRUE(becomes(
        [&] { return m_workspace->frontmostApplication()->frontWindowTitle().value_or("").contains("Private"); }));
    visit(firefoxId, m_site.address("localhost", "/c"));
}

TEST_F(BrowserScriptingOn, appThatIsNoBrowserHasNoAddress)
{
    Program editor{{"mousepad", "--disable-server"}};
    EXPECT_TRUE(comesToFront("org.xfce.mousepad"));
    EXPECT_EQ(await(m_browsers.addressOfFrontTab(m_workspace->frontmostApplication())), std::nullopt);
    EXPECT_FALSE(m_browsers.canAsk("org.xfce.mousepad"));
}

} // namespace stillgate
