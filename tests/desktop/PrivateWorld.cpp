#include "tests/desktop/PrivateWorld.h"

#include <cstdlib>

namespace stillgate::test
{

void PrivateWorldTest::SetUp()
{
    const bool isPrivate = ::getenv("STILLGATE_PRIVATE_WORLD") != nullptr &&
        fileBytes("/proc/self/mounts").contains("stillgate-etc /etc overlay");
    if (!isPrivate) {
        ADD_FAILURE() << "run by scripts/private-world only: this test changes /etc/hosts";
        std::exit(EXIT_FAILURE);
    }
}

HeadlessEngine::HeadlessEngine()
{
    std::filesystem::permissions(m_home.path(), std::filesystem::perms::all);
}

void HeadlessEngine::putSession()
{
    putFile(home() / ".config/com.stillgate.macos/defaults.json", R"({"sg_onboarding_complete":true})");
    putFile(home() / ".local/share/com.stillgate.macos/secure/sg%5Faccess%5Ftoken", "any bytes");
    putFile(home() / ".local/share/com.stillgate.macos/secure/sg%5Frefresh%5Ftoken", "any bytes");
}

std::filesystem::path HeadlessEngine::stateFile() const
{
    return home() / ".local/share/com.stillgate.macos/cache/state.dat";
}

std::string HeadlessEngine::blockedConfig() const
{
    return fileBytes(home() / ".local/share/group.com.stillgate.macos/blocked-config.json");
}

void HeadlessEngine::start(const std::string& asUser)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.remove("XDG_DATA_HOME");
    environment.remove("XDG_CONFIG_HOME");
    environment.insert("HOME", QString::fromStdString(home()));
    environment.insert("STILLGATE_API_BASE_URL", QString::fromStdString(baseURL));
    m_process.setProcessEnvironment(environment);
    m_process.setStandardErrorFile(QString::fromStdString(m_log));
    QStringList command{STILLGATE_PROGRAM, "--headless"};
    if (!asUser.empty()) {
        shell("chown -R " + asUser + " " + home().string());
        command = QStringList{"setpriv", "--reuid", QString::fromStdString(asUser), "--clear-groups"} + command;
    }
    m_process.start(command.takeFirst(), command);
    ASSERT_TRUE(m_process.waitForStarted());
}

int HeadlessEngine::stop()
{
    m_process.terminate();
    if (!m_process.waitForFinished(20'000) || m_process.exitStatus() == QProcess::CrashExit)
        return -1;
    return m_process.exitCode();
}

std::string HeadlessEngine::runOnce(const std::string& asUser)
{
    start(asUser);
    EXPECT_TRUE(logs("[AppState] Bootstrap failed (offline): "));
    EXPECT_EQ(stop(), 0);
    return log();
}

bool HeadlessEngine::logs(const std::string& text)
{
    return becomes([&] { return log().contains(text); });
}

} // namespace stillgate::test
