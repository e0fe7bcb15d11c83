#include "tests/desktop/InstalledProgram.h"

namespace stillgate::test
{

void InstalledProgramTest::SetUp()
{
    GuardTest::SetUp();
    startNetwork();
    if (!begin())
        GTEST_SKIP() << "built for a backend whose keys aren't here";
    shell("mkdir -p /run/user/2001; chmod 700 /run/user/2001; chown anna: /run/user/2001");
    const std::string bus = "unix:path=/run/user/2001/bus";
    home.giveTo(anna, bus);
    m_sessionBus.emplace(home,
        QStringList{
            "--session", "--nofork", "--nopidfile", "--address=" + QString::fromStdString(bus), "--print-address"},
        "dbus-daemon");
    ASSERT_TRUE(m_sessionBus->says(bus)); // once it listens
}

bool InstalledProgramTest::isEnforced(const std::string& domain)
{
    return hosts().contains("127.0.0.1 " + domain + "\n") && ask(domain) == "NXDOMAIN" &&
        ask("open.example") == "10.1.1.1";
}

} // namespace stillgate::test
