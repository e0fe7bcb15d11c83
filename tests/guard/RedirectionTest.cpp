#include "tests/guard/GuardMachine.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;

/// The table of the packet filter, and what a machine's programs see of the network through it.
class Redirection : public GuardTest
{
protected:
    void SetUp() override
    {
        GuardTest::SetUp();
        startNetwork();
    }

    static void enableProxy(const std::string& blocked)
    {
        EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), "done /var/lib/stillgate/group/2001");
        shell("umask 027; cd /var/lib/stillgate/group/2001; setpriv --reuid 2001 --regid 2001 --clear-groups bash -c '"
              "echo {\\\"domains\\\":[\\\"" +
            blocked + "\\\"]} >new && mv new blocked-config.json'");
    }

    static std::string table() { return shell("nft list table inet stillgate 2>/dev/null"); }
};

TEST_F(Redirection, damageIsRepairedAtOnce)
{
    EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), "done /var/lib/stillgate/group/2001");
    const auto whole = table();
    const std::string damages[] = {
        "nft flush ruleset",
        "nft delete table inet stillgate",
        "nft flush chain inet stillgate output",
        "nft add rule inet stillgate output udp dport 99 drop",
        "nft insert rule inet stillgate output return",
        "nft delete rule inet stillgate output handle $(nft -a list table inet stillgate | awk '/udp dport/ {print "
        "$NF}')",
        "nft add element inet stillgate resolvers { 2001 }",
        "nft add table inet other; nft flush ruleset; nft add table inet stillgate",
        "pkill -KILL -x nft",
        "pkill -KILL -f 'keep-redirect watch'",
    };
    for (int round = 0; round < 3; ++round) {
        for (const auto& damage : damages) {
            shell(damage);
            EXPECT_TRUE(becomes([&] { return table() == whole; })) << damage << "\n" << table();
        }
    }
    shell("nft add table inet other");
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "done");
    EXPECT_EQ(shell("nft list ruleset"), "table inet other {\n}\n") << "nothing of anybody else's has gone";
}

TEST_F(Redirection, blockedNamesEndWhoeverIsAsked)
{
    EXPECT_EQ(ask("blocked.example"), "10.1.1.1");
    enableProxy("blocked.example");
    EXPECT_TRUE(becomes([] { return ask("blocked.example") == "NXDOMAIN"; }));
    for (const std::string server : {"10.9.9.9", "fd09::9", "203.0.113.7"}) {
        if (server.starts_with("203"))
            shell("ip route replace 203.0.113.0/24 dev lo");
        EXPECT_EQ(ask("www.blocked.example", server), "NXDOMAIN") << server;
        EXPECT_EQ(ask("+tcp blocked.example", server), "NXDOMAIN") << server;
        EXPECT_EQ(ask("open.example", server), "10.1.1.1") << server;
        EXPECT_EQ(ask("+tcp open.example", server), "10.1.1.1") << server;
    }
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "done");
    EXPECT_EQ(ask("blocked.example"), "10.1.1.1");
    EXPECT_EQ(shell("nft list ruleset"), "");
}

TEST_F(Redirection, killedProxyMissesNoQuestion)
{
    enableProxy("blocked.example");
    EXPECT_TRUE(becomes([] { return ask("blocked.example") == "NXDOMAIN"; }));
    for (int i = 0; i < 10; ++i) {
        shell("pkill -KILL -x stillgate-dnspr"); // as much of the name as a process has
        EXPECT_EQ(ask("blocked.example"), "NXDOMAIN");
        EXPECT_EQ(ask("open.example"), "10.1.1.1");
    }
}

TEST_F(Redirection, resolverOfTheMachineAsksNobodyInACircle)
{
    startResolver("--listen-address=127.0.0.1 --user=dnsmasq --server=10.9.9.9");
    putFile("/etc/resolv.conf", "nameserver 127.0.0.1\n");
    enableProxy("blocked.example");
    EXPECT_TRUE(becomes([] { return ask("blocked.example", "127.0.0.1") == "NXDOMAIN"; }));
    EXPECT_EQ(ask("open.example", "127.0.0.1"), "10.1.1.1");
    EXPECT_EQ(ask("blocked.example"), "NXDOMAIN") << "and past it there is no way either";
}

TEST_F(Redirection, resolverThatComesAndGoesIsNoticedHoweverMuchHappens)
{
    enableProxy("blocked.example");
    const auto hasResolver = [] {
        shell("nft 'add table inet busy; delete table inet busy'");
        return table().contains("elements");
    };
    startResolver("--listen-address=127.0.0.1 --user=dnsmasq --server=10.9.9.9");
    EXPECT_TRUE(becomes(hasResolver));
    shell("pkill -x -u dnsmasq dnsmasq");
    EXPECT_TRUE(becomes([&] { return !hasResolver(); }));
}

TEST_F(Redirection, whatIsOlderThanTheTableReachesNobody)
{
    shell("nft 'table inet firewall { chain out { type filter hook output priority 0; ct state established accept; }; "
          "}'");
    putFile("/run/asker.pl", R"(
        use IO::Socket::INET; $| = 1; $SIG{PIPE} = "IGNORE";
        my $question = pack("n6", 1, 256, 1, 0, 0, 0) . "\1a\7example\0" . pack("n2", 1, 1);
        my %sent = (udp => $question, tcp => pack("n/a", $question));
        my %sockets = map { $_ => IO::Socket::INET->new(PeerAddr => "10.9.9.9:53", Proto => $_, Timeout => 5) } "udp", "tcp";
        for my $seconds (5, 0.5) {
            for my $protocol ("udp", "tcp") {
                syswrite $sockets{$protocol}, $sent{$protocol};
                vec(my $readable = "", fileno $sockets{$protocol}, 1) = 1;
                my $has = select($readable, undef, undef, $seconds) && sysread $sockets{$protocol}, my $bytes, 512;
                print $has ? "answer " : "nothing ";
            }
            print "\n"; <STDIN>;
        })");
    QProcess asker;
    asker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    asker.start("setpriv", {"--reuid", "2001", "--regid", "2001", "--clear-groups", "perl", "/run/asker.pl"});
    ASSERT_TRUE(becomes([&] { return asker.canReadLine(); }));
    EXPECT_EQ(asker.readLine(), "answer answer \n");
    enableProxy("blocked.example");
    asker.write("\n");
    ASSERT_TRUE(becomes([&] { return asker.canReadLine(); }));
    EXPECT_EQ(asker.readLine(), "nothing nothing \n");
    EXPECT_TRUE(becomes([] { return ask("open.example") == "10.1.1.1"; })) << "what begins now is redirected";
    asker.kill();
    asker.waitForFinished();
}

TEST_F(Redirection, nobodyElseWhoListensIsAResolver)
{
    for (const auto* account : {"2001", "65534", "0"}) {
        QProcess listener;
        listener.start("setpriv",
            {"--reuid", account, "--regid", account, "--clear-groups", "--inh-caps=+net_bind_service",
                "--ambient-caps=+net_bind_service", "perl", "-MIO::Socket::INET", "-e",
                "my $s = IO::Socket::INET->new(LocalAddr => '127.0.0.1:53', Proto => 'udp') or die; $s->recv(my $x, "
                "1)"});
        ASSERT_TRUE(becomes([] { return shell("ss -Hlun 'sport = :53'").contains("127.0.0.1"); }));
        EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), "done /var/lib/stillgate/group/2001");
        EXPECT_EQ(table().find("elements"), std::string::npos) << account << table();
        EXPECT_EQ(call(anna, "DisableDNSProxy"), "done");
        listener.kill();
        listener.waitForFinished();
    }
}

} // namespace stillgate
