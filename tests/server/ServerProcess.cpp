#include "tests/server/ServerProcess.h"

#include "Accounts/SignIns.h"
#include "Accounts/Users.h"
#include "Database/Database.h"
#include "Platform/Linux/LinuxClock.h"

#include <QDateTime>

#include <csignal>
#include <sodium.h>
#include <stdexcept>
#include <sys/prctl.h>

namespace stillgate::test
{

namespace
{

/// Where it is about noon now, so that no midnight comes between two steps of a test.
std::string zoneAtNoon()
{
    const auto hour = QDateTime::currentDateTimeUtc().time().hour();
    return "Etc/GMT" + std::string{hour < 12 ? "-" : "+"} + std::to_string(std::abs(12 - hour)); // "-" is east
}

constexpr int longestWait = 30'000; // milliseconds, on a machine that is busy with other tests

QString text(const std::string& bytes)
{
    return QString::fromStdString(bytes);
}

} // namespace

ServerProcess::ServerProcess(std::string database)
    : m_database(std::move(database))
{
    QStringList arguments{"init", "--folder", text(folder()), "--host", "127.0.0.1", "--host", "localhost",
        "--loopback-site-port", "8780"};
    if (m_database.empty())
        m_database = folder() / "stillgate.db";
    else
        arguments += {"--database", text(m_database)};
    m_process.setStandardErrorFile(text(m_folder.path() / "server.log"), QProcess::Append);
    // A test that crashes leaves no server behind.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(STILLGATE_SERVER_PROGRAM, arguments);
    if (!m_process.waitForFinished(longestWait) || m_process.exitCode() != 0)
        fail("make a deployment");
    start(0, 0);
}

ServerProcess::~ServerProcess()
{
    if (m_process.state() != QProcess::NotRunning)
        kill();
}

std::string ServerProcess::baseURL() const
{
    return "https://127.0.0.1:" + std::to_string(m_port) + "/v1";
}

std::vector<SignedInDevice> ServerProcess::addDevices(int count)
{
    if (sodium_init() < 0)
        throw std::runtime_error{"libsodium can't be used"};
    const auto now = LinuxClock{}.now();
    server::Database connection{m_database};
    const auto first = m_accounts;
    m_accounts += count;
    return connection.inTransaction([&] {
        std::vector<SignedInDevice> devices;
        for (int number = first; number < m_accounts; ++number) {
            const auto name = "account-" + std::to_string(number);
            const server::SignUp form{.email = name + "@example.org",
                .displayName = name,
                .password = "not used here",
                .timeZone = zoneAtNoon(),
                .language = "en"};
            const auto userId = server::createUser(connection, form, "no hash", now).value();
            server::SignIns signIns{connection};
            const auto token = signIns.begin(userId, now).accessToken;
            devices.push_back({userId, signIns.accountOf(token, now)->deviceId, token});
        }
        return devices;
    });
}

void ServerProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(longestWait);
}

void ServerProcess::terminate()
{
    m_process.terminate();
}

std::optional<int> ServerProcess::waitForEnd()
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(longestWait))
        fail("end");
    if (m_process.exitStatus() != QProcess::NormalExit)
        return std::nullopt;
    return m_process.exitCode();
}

void ServerProcess::restart(Ports ports)
{
    const bool areSame = ports == Ports::same;
    start(areSame ? m_port : 0, areSame ? m_sitePort : 0);
}

void ServerProcess::start(std::uint16_t port, std::uint16_t sitePort)
{
    m_process.start(STILLGATE_SERVER_PROGRAM,
        {"serve", "--config", text(folder() / "server.toml"), "--port", QString::number(port), "--loopback-site-port",
            QString::number(sitePort)});
    m_port = printedPort("Listening on https://127.0.0.1:");
    m_sitePort = printedPort("The web site is at http://127.0.0.1:");
}

std::uint16_t ServerProcess::printedPort(const QByteArray& introduction)
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(longestWait))
            fail("listen");
    }
    const auto line = m_process.readLine().trimmed();
    const auto port = line.startsWith(introduction) ? line.mid(introduction.size()).toUShort() : 0;
    if (port == 0)
        fail("tell where it listens, but says: " + line.toStdString());
    return port;
}

void ServerProcess::fail(const std::string& what)
{
    throw std::runtime_error{"stillgate-server doesn't " + what + '\n' + log()};
}

} // namespace stillgate::test
