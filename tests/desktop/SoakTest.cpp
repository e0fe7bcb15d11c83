#include "Blocking/HostsEntries.h"
#include "Platform/HostsBlock.h"
#include "tests/desktop/InstalledProgram.h"

#include <QThread>
#include <gmock/gmock.h>

#include <iostream>
#include <random>

namespace stillgate::test
{

using testing::IsEmpty;

/// Somebody who damages what they can, as root could, and a machine that breaks: at random moments, as often as
/// STILLGATE_SOAK_DAMAGES and STILLGATE_SOAK_KILLS say. `./dev soak` runs it for long.
class Soak : public InstalledProgramTest
{
protected:
    void SetUp() override
    {
        InstalledProgramTest::SetUp();
        std::cout << "seed " << m_seed << std::endl;
    }

    static int times(const char* variable, int otherwise)
    {
        return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariableIntValue(variable) : otherwise;
    }

    int random(int below) { return std::uniform_int_distribution{0, below - 1}(m_random); }

    const std::string& oneOf(const std::vector<std::string>& all)
    {
        return all[static_cast<std::size_t>(random(static_cast<int>(all.size())))];
    }

    void startAndEnforce()
    {
        makeRule({terminal}, {"video.example"});
        start();
        ASSERT_TRUE(becomes([] { return isEnforced("video.example"); })) << hosts() << program().output();
        m_block = generateHostsEntries({"video.example"});
        m_table = table();
    }

    static std::string table() { return shell("nft list table inet stillgate 2>/dev/null"); }

    [[nodiscard]] bool isWhole() const { return hosts().contains(m_block) && table() == m_table; }

    void expectEnforced(const std::string& afterWhat)
    {
        EXPECT_TRUE(becomes([this] { return isWhole(); })) << afterWhat << '\n'
                                                           << hosts() << table() << program().output();
        EXPECT_TRUE(becomes([] { return isEnforced("video.example"); })) << afterWhat;
        EXPECT_TRUE(hasEveryLineOfTheUser()) << afterWhat << '\n' << hosts();
    }

    /// In their order; a damaged block may leave lines of its own among them.
    [[nodiscard]] bool hasEveryLineOfTheUser() const
    {
        const auto text = hosts();
        std::size_t position = 0;
        for (const auto& line : m_lines) {
            position = text.find(line + '\n', position);
            if (position == std::string::npos)
                return false;
            position += line.size() + 1;
        }
        return true;
    }

    /// The user writes a line of their own, ahead of the block or at the end of the file.
    void addLineOfUser()
    {
        const auto line =
            "10.0.0." + std::to_string(1 + m_lines.size() % 250) + " own-" + std::to_string(m_lines.size());
        if (random(2) == 0) {
            m_lines.push_back(line);
            shell("echo '" + line + "' >>/etc/hosts");
        } else {
            m_lines.insert(m_lines.begin(), line);
            shell("sed -i '1i " + line + "' /etc/hosts");
        }
    }

    void damageHosts()
    {
        const auto block = hosts().find("# Stillgate Protected Sites");
        const auto line = std::to_string(1 + random(9));
        const auto inBlock = "/# Stillgate Protected Sites/,/# End Stillgate/";
        shell(oneOf({
            std::string{"sed -i '"} + inBlock + "d' /etc/hosts",
            std::string{"sed -i '"} + inBlock + "{/[.]example/d}' /etc/hosts",
            std::string{"sed -i '"} + inBlock + "s/127.0.0.1/10.1.1.1/' /etc/hosts",
            std::string{"sed -i '"} + inBlock + "s/^/#/' /etc/hosts",
            std::string{"sed -i '/# Stillgate Protected Sites/,$ {0~"} + line + "s/e/x/}' /etc/hosts",
            "sed -i '/# End Stillgate/d' /etc/hosts",
            "sed -i '/# Stillgate Protected Sites/d' /etc/hosts",
            std::string{"sed -n '"} + inBlock + "p' /etc/hosts >>/etc/hosts",
            std::string{"sed '"} + inBlock + "d' /etc/hosts >/etc/hosts.new; mv /etc/hosts.new /etc/hosts",
            "dd if=/dev/urandom of=/etc/hosts bs=1 count=5 conv=notrunc 2>/dev/null seek=" + std::to_string(block + 40),
        }));
    }

    void damageTable()
    {
        shell(oneOf({
            "nft flush ruleset",
            "nft delete table inet stillgate",
            "nft flush chain inet stillgate output",
            "nft insert rule inet stillgate output return",
            "nft add element inet stillgate resolvers { 2001 }",
            "nft delete rule inet stillgate output handle "
            "$(nft -a list table inet stillgate | awk '/udp dport/ {print $NF}' | head -n 1)",
            "pkill -KILL -x nft",
            "pkill -KILL -f 'keep-redirect watch'",
        }));
    }

    void damage()
    {
        if (random(4) == 0)
            addLineOfUser();
        random(2) == 0 ? damageHosts() : damageTable();
    }

    void killSomething()
    {
        QThread::msleep(static_cast<unsigned long>(random(60))); // where each of them is by then is what varies
        switch (random(3)) {
        case 0:
            shell("pkill -KILL -x stillgate-dnspr"); // as much of the name as a process has
            break;
        case 1:
            killGuard();
            break;
        default:
            program().kill();
            start();
        }
    }

    std::vector<std::string> m_lines{"127.0.0.1 localhost", "192.168.1.5 nas"};
    std::string m_block;
    std::string m_table;
    unsigned m_seed = std::random_device{}();
    std::mt19937 m_random{m_seed};
};

TEST_F(Soak, damagesAndKillsLeaveTheMachineEnforcedAndThenRestored)
{
    startAndEnforce();
    const int damages = times("STILLGATE_SOAK_DAMAGES", 30);
    const int kills = times("STILLGATE_SOAK_KILLS", 6);
    for (int i = 0, killed = 0; i < damages && !HasFailure(); ++i) {
        damage();
        if (killed * damages < i * kills) {
            ++killed;
            killSomething();
        }
        expectEnforced("damage " + std::to_string(i));
    }
    EXPECT_EQ(program().terminate(), 0);
    const auto outsideTheBlock = withoutHostsBlocks(hosts(), {});
    EXPECT_EQ(shell(STILLGATE_PROGRAMS "/stillgate-guard --restore; echo $?"), "0\n");
    EXPECT_EQ(hosts(), outsideTheBlock) << "to the byte";
    EXPECT_THAT(hostsBlockNames(hosts(), {}), IsEmpty()) << hosts();
    EXPECT_TRUE(hasEveryLineOfTheUser()) << hosts();
    EXPECT_EQ(shell("nft list ruleset; ls /var/lib/stillgate /var/lib/stillgate-dnsproxy 2>/dev/null"), "");
}

TEST_F(Soak, fullDiskAndReadOnlyEtcLoseNothingAndAreMadeUpFor)
{
    shell("mkdir /mnt/small; mount -t tmpfs -o size=256k small /mnt/small; mkdir /mnt/small/{changed,work};"
          "mount -t overlay -o lowerdir=/etc,upperdir=/mnt/small/changed,workdir=/mnt/small/work small-etc /etc");
    startAndEnforce();
    const auto cut = "truncate -s " + std::to_string(hosts().find("\n# Stillgate")) + " /etc/hosts; ";
    for (const auto& [hinder, relieve] :
        {std::pair{"dd if=/dev/zero of=/mnt/small/filler 2>/dev/null; ", "rm /mnt/small/filler"},
            {"mount -o remount,ro /etc", "mount -o remount,rw /etc"}}) {
        const auto failures = program().output().size();
        shell(cut + hinder);
        EXPECT_TRUE(becomes([&] {
            return program().output().find("[HostsFile] Failed to apply blocks", failures) != std::string::npos;
        })) << hinder;
        EXPECT_TRUE(hosts().starts_with("127.0.0.1 localhost\n192.168.1.5 nas")) << hinder;
        shell(relieve);
        expectEnforced(relieve);
    }
    shell("umount -l /etc");
}

TEST_F(Soak, clockThatJumpsByADayEndsNoBlock)
{
    const auto clock = home.path() / "clock";
    putFile(clock, "+0");
    home.environment.insert("LD_PRELOAD", "/usr/$LIB/faketime/libfaketimeMT.so.1");
    home.environment.insert("FAKETIME_TIMESTAMP_FILE", QString::fromStdString(clock));
    home.environment.insert("FAKETIME_NO_CACHE", "1");
    home.environment.insert("FAKETIME_DONT_FAKE_MONOTONIC", "1");
    startAndEnforce();
    home.environment.remove("LD_PRELOAD");
    for (const auto* jump : {"+1d", "-1d", "+0"}) {
        putFile(clock, jump);
        damageHosts();
        expectEnforced(jump);
        const ApplicationProcess forbidden{home, {}, "xterm"};
        EXPECT_TRUE(blockScreenComes()) << jump;
        press("Escape");
        EXPECT_TRUE(blockScreenGoes()) << jump;
    }
}

} // namespace stillgate::test
