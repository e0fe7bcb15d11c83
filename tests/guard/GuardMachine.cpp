#include "tests/guard/GuardMachine.h"

#include "Blocking/HostsEntries.h"

#include <csignal>
#include <cstdlib>

namespace stillgate::test
{

namespace
{

/// The programs and files at their places below /usr, over the machine's own.
void install()
{
    shell(R"(
        set -e
        for user in anna:x:2001 ben:x:2002; do
            echo "$user:${user##*:}::/nonexistent:/usr/sbin/nologin" >>/etc/passwd; echo "$user:" >>/etc/group
        done
        root=/run/installation/usr; mkdir -p $root/{bin,sbin} $root/lib/stillgate $root/share/dbus-1/system{.d,-services}
        mkdir -p $root/share/polkit-1/actions
        ln -s )" STILLGATE_PROGRAMS R"(/stillgate-guard $root/sbin/
        ln -s )" STILLGATE_PROGRAMS R"(/stillgate-dnsproxy $root/bin/
        cd )" STILLGATE_PACKAGING R"(
        cp keep-redirect stillgate-dns-redirect.nft $root/lib/stillgate/
        cp com.stillgate.Guard.service $root/share/dbus-1/system-services/
        cp com.stillgate.Guard.conf $root/share/dbus-1/system.d/
        cp com.stillgate.guard.policy $root/share/polkit-1/actions/
        mount -t overlay -o lowerdir=$root:/usr stillgate-installation /usr)");
}

/// Only polkit's own account may take its name otherwise.
constexpr auto standInPolicy =
    R"(<busconfig><policy user="root"><allow own="org.freedesktop.PolicyKit1"/></policy></busconfig>)";

/// One for this process: a connection to the system bus can't be made anew. It prints its address once it listens,
/// which is later than its socket is there.
void startBus()
{
    putFile("/etc/dbus-1/system.d/stand-in.conf", standInPolicy);
    static QProcess bus;
    bus.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    bus.start("dbus-daemon", {"--system", "--nofork", "--nopidfile", "--systemd-activation", "--print-address"});
    ASSERT_TRUE(becomes([] { return bus.canReadLine(); }));
}

void makeMachine()
{
    const bool isPrivate = ::getenv("STILLGATE_PRIVATE_WORLD") != nullptr &&
        fileBytes("/proc/self/mounts").contains("stillgate-lib /var/lib tmpfs");
    if (!isPrivate) {
        ADD_FAILURE() << "run by tests/guard/private-machine only: this test changes /etc, units and packet filters";
        std::exit(EXIT_FAILURE);
    }
    install();
    startBus();
}

} // namespace

UserCall::UserCall(uid_t user, const std::string& words, const std::string& input)
{
    const auto number = QString::number(user);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start("setpriv",
        QStringList{
            "--reuid", number, "--regid", number, "--clear-groups", STILLGATE_PROGRAMS "/stillgate-test-caller"} +
            QString::fromStdString(words).split(' '));
    m_process.write(input.data(), static_cast<qint64>(input.size()));
    while (m_process.bytesToWrite() > 0 && m_process.waitForBytesWritten()) {
    } // at the speed of the pipe
    m_process.closeWriteChannel();
}

std::string UserCall::result()
{
    EXPECT_TRUE(becomes([this] { return hasEnded(); }));
    return m_process.readAllStandardOutput().toStdString();
}

void UserCall::die()
{
    m_process.kill();
    result();
}

void GuardTest::SetUp()
{
    static std::once_flag once;
    std::call_once(once, makeMachine);
    putFile("/etc/hosts", original);
    m_polkit.emplace();
    m_polkit->granted = {block, unblock};
    startUnits();
}

void GuardTest::TearDown()
{
    killGuard();
    stopUnits();
    shell("pkill -x dnsmasq; while pgrep -x dnsmasq; do :; done;"
          "rm -rf /var/lib/stillgate /var/lib/stillgate-dnsproxy; nft flush ruleset");
}

void GuardTest::startUnits()
{
    m_units = std::make_unique<QProcess>();
    m_units->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_units->start(STILLGATE_PROGRAMS "/stillgate-test-units", {STILLGATE_PACKAGING, "/"});
    ASSERT_TRUE(becomes([&] { return m_units->canReadLine(); }));
}

void GuardTest::stopUnits()
{
    m_units->terminate();
    EXPECT_TRUE(becomes([&] { return m_units->state() == QProcess::NotRunning; }));
    EXPECT_EQ(m_units->exitStatus(), QProcess::NormalExit);
}

std::string GuardTest::replace(uid_t user, const std::string& mode, const std::vector<std::string>& domains)
{
    return call(user, "ReplaceHostsBlock block - " + mode, generateHostsEntries(domains));
}

std::string GuardTest::hostsWith(const std::vector<std::string>& domains)
{
    return original + generateHostsEntries(domains);
}

std::string GuardTest::stateOf(const std::string& unit)
{
    const std::string manager = "dbus-send --system --print-reply=literal --dest=org.freedesktop.systemd1 ";
    return shell(manager + "$(" + manager +
        "/org/freedesktop/systemd1 org.freedesktop.systemd1.Manager.GetUnit string:" + unit +
        ") org.freedesktop.DBus.Properties.Get string:org.freedesktop.systemd1.Unit string:ActiveState"
        " | awk '{ printf \"%s \", $NF }'; " +
        manager + "/org/freedesktop/systemd1 org.freedesktop.systemd1.Manager.GetUnitFileState string:" + unit +
        " | awk '{ printf \"%s\", $NF }'");
}

void GuardTest::startNetwork()
{
    shell("ip address replace 10.9.9.9/32 dev lo; ip address replace fd09::9/128 dev lo nodad;"
          "ip route replace 203.0.113.0/24 dev lo");
    startResolver("--listen-address=10.9.9.9 --listen-address=fd09::9 --user=nobody --address=/example/10.1.1.1");
    putFile("/etc/resolv.conf", "nameserver 10.9.9.9\n");
}

void GuardTest::startResolver(const std::string& options)
{
    shell("dnsmasq --conf-file=/dev/null --pid-file= --bind-interfaces --no-hosts --no-resolv " + options);
}

std::string GuardTest::ask(const std::string& question, const std::string& server)
{
    return shell("setpriv --reuid 2001 --regid 2001 --clear-groups dig +tries=1 +time=5 @" + server + " " + question +
        R"( | awk '/status:/ { sub(",", "", $6); status = $6 } !/^;/ && NF { answer = $NF }
                   END { printf "%s", answer && status == "NOERROR" ? answer : status }')");
}

void GuardTest::killGuard()
{
    // Its script, once begun, comes to its end; systemd waits for that before it starts the guard again.
    shell("for pid in $(pgrep -x stillgate-guard); do kill -KILL $pid; while [ -e /proc/$pid ]; do :; done; done;"
          "while pgrep -f [r]eplace-hosts-file; do :; done");
}

} // namespace stillgate::test
