#include "tests/guard/GuardMachine.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using testing::HasSubstr;

class Installation : public GuardTest
{
protected:
    static std::string table() { return shell("nft list table inet stillgate 2>/dev/null"); }

    static std::string unitStates()
    {
        return stateOf("stillgate-dnsproxy.socket") + ", " + stateOf("stillgate-dns-redirect.service");
    }

    /// A tree of the user's, deeper than systemd lets a service have files open.
    static void makeDeepTree()
    {
        shell("setpriv --reuid 2001 --regid 2001 --clear-groups perl -e 'chdir \"/var/lib/stillgate/group/2001\";"
              "for (1..1500) { mkdir \"d\"; chdir \"d\" or die }'");
    }

    static constexpr auto allOn = "active enabled, active enabled";
    static constexpr auto allOff = "inactive disabled, inactive disabled";
    static constexpr auto annasFolder = "/var/lib/stillgate/group/2001";
};

TEST_F(Installation, proxyRunsWhileAnyUserWantsIt)
{
    EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), std::string{"done "} + annasFolder);
    EXPECT_EQ(shell(std::string{"stat -c '%u %G %a' "} + annasFolder), "2001 stillgate-dnsproxy 2750\n");
    EXPECT_EQ(shell("stat -c '%u %a' /var/lib/stillgate/group /var/lib/stillgate/guard"), "0 755\n0 700\n");
    EXPECT_EQ(unitStates(), allOn);
    EXPECT_THAT(table(), HasSubstr("redirect to :153"));
    EXPECT_EQ(call(anna, "Status"), std::string{"done true "} + annasFolder + " false");
    EXPECT_EQ(call(ben, "Status"), "done false  false");

    EXPECT_EQ(call(ben, "EnableDNSProxy flexible"), "done /var/lib/stillgate/group/2002");
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "done");
    EXPECT_FALSE(std::filesystem::exists(annasFolder));
    EXPECT_EQ(unitStates(), allOn);
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "done") << "which changes nothing of the other's";
    EXPECT_EQ(unitStates(), allOn);

    EXPECT_EQ(call(ben, "DisableDNSProxy"), "done");
    EXPECT_EQ(unitStates(), allOff);
    EXPECT_EQ(shell("nft list ruleset; ls -A /var/lib/stillgate/group /var/lib/stillgate/guard"),
        "/var/lib/stillgate/group:\n\n/var/lib/stillgate/guard:\n");
    EXPECT_EQ(hosts(), original);
}

TEST_F(Installation, permanentProxyEndsWithAnAdministratorsConsent)
{
    EXPECT_EQ(call(anna, "EnableDNSProxy permanent"), std::string{"done "} + annasFolder);
    EXPECT_EQ(call(anna, "EnableDNSProxy permanent"), std::string{"done "} + annasFolder);
    EXPECT_THAT(m_polkit->asked, testing::Each(std::string{block}));
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "AccessDenied");
    EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), "AccessDenied");
    EXPECT_EQ(unitStates(), allOn);
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "AccessDenied") << "and it is permanent as before";
    const std::string mark = std::string{annasFolder} + ".permanent";
    EXPECT_TRUE(std::filesystem::exists(mark)) << "nor may the user take a name away";
    m_polkit->granted.insert(unblockPermanent);
    EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), std::string{"done "} + annasFolder);
    EXPECT_FALSE(std::filesystem::exists(mark));
    m_polkit->granted.erase(unblockPermanent);
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "done");
    EXPECT_EQ(unitStates(), allOff);
}

TEST_F(Installation, unitThatCannotStartLeavesNothing)
{
    shell("mount --bind /bin/false /usr/sbin/nft");
    EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), "Failed");
    shell("umount /usr/sbin/nft");
    EXPECT_EQ(unitStates(), allOff);
    EXPECT_FALSE(std::filesystem::exists(annasFolder));
    EXPECT_EQ(call(anna, "Status"), "done false  false");
}

TEST_F(Installation, userFolderIsRemovedWithWhatIsInItAndNothingElse)
{
    EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), std::string{"done "} + annasFolder);
    putFile("/var/lib/kept/file", "kept");
    shell("chmod 777 /var/lib/kept; setpriv --reuid 2001 --regid 2001 --clear-groups bash -c 'cd "
          "/var/lib/stillgate/group/2001;"
          "ln -s /var/lib/kept link; mkdir -p a/b/c; chmod 0 a/b; touch blocked-config.json; mkfifo pipe; rmdir "
          "../2001; mv ../2001 ../x' 2>/dev/null");
    EXPECT_EQ(shell("ls /var/lib/stillgate/group; stat -c %G /var/lib/stillgate/group/2001/blocked-config.json"),
        "2001\nstillgate-dnsproxy\n");
    makeDeepTree();
    shell("prlimit --nofile=1024 --pid $(pgrep -x stillgate-guard)");
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "done");
    EXPECT_EQ(shell("ls -A /var/lib/stillgate/group"), "");
    EXPECT_TRUE(becomes([] { return shell("ls -A /var/lib/stillgate") == "group\nguard\n"; }));
    EXPECT_EQ(fileBytes("/var/lib/kept/file"), "kept");
}

TEST_F(Installation, removalLeavesNoTraceWithAndWithoutABus)
{
    for (const std::string environment : {"", "DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nowhere "}) {
        EXPECT_EQ(call(anna, "EnableDNSProxy permanent"), std::string{"done "} + annasFolder);
        EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
        EXPECT_EQ(replace(ben, "flexible", {"b.example"}), "done");
        if (!environment.empty())
            stopUnits(); // and the table is somebody's who is no more
        if (!environment.empty())
            shell("/usr/lib/stillgate/keep-redirect load");
        makeDeepTree();
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(shell("ulimit -n 1024; " + environment + "stillgate-guard --restore 2>&1; echo $?"), "0\n");
            if (environment.empty()) {
                EXPECT_EQ(unitStates(), allOff);
                EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "Ended") << "by an application that still runs";
            }
            EXPECT_EQ(hosts(), original);
            EXPECT_EQ(shell("nft list ruleset; ls -A /var/lib | grep stillgate"), "");
        }
        killGuard();
        if (environment.empty())
            stopUnits();
        startUnits(); // as after the next boot
    }
}

TEST_F(Installation, realPolkitKnowsTheActions)
{
    m_polkit.reset();
    shell("mkdir -p /var/lib/polkit-1 /run/user");
    QProcess polkitd;
    polkitd.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    polkitd.start("/usr/lib/polkit-1/polkitd", {"--no-debug"});
    const std::string question =
        "pkcheck --process $$ --action-id com.stillgate.guard.block >/dev/null 2>&1; echo -n $?";
    ASSERT_TRUE(becomes([&] { return shell(question) == "0"; })) << "root may";

    EXPECT_EQ(replace(anna, "flexible", {"a.example"}), "AccessDenied") << "who sits at no desktop, with nobody to ask";
    putFile("/etc/polkit-1/rules.d/10-test.rules", R"(polkit.addRule(function(action, subject) {
        return action.id.indexOf("com.stillgate.guard.") == 0 && action.id != "com.stillgate.guard.unblock-permanent"
            ? polkit.Result.YES : polkit.Result.NOT_HANDLED; });)");
    EXPECT_TRUE(becomes([&] { return replace(anna, "permanent", {"a.example"}) == "done"; }))
        << "once polkit has seen its new file";
    EXPECT_EQ(hosts(), hostsWith({"a.example"}));
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "AccessDenied");
    polkitd.kill();
    EXPECT_TRUE(becomes([&] { return polkitd.state() == QProcess::NotRunning; }));
    shell("rm /etc/polkit-1/rules.d/10-test.rules");
}

} // namespace stillgate
