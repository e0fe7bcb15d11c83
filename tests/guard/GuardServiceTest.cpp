#include "Blocking/HostsEntries.h"
#include "tests/guard/GuardMachine.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using testing::AnyOf;
using testing::ElementsAre;
using testing::SizeIs;

using Guard = GuardTest;

TEST_F(Guard, blockComesAndGoesToTheByte)
{
    EXPECT_EQ(replace(anna, "flexible", {"a.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example"}));
    EXPECT_EQ(call(anna, "Status"), "done false  true");
    EXPECT_EQ(replace(anna, "flexible", {"b.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"b.example"}));
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "done");
    EXPECT_EQ(hosts(), original);
    EXPECT_EQ(call(anna, "Status"), "done false  false");
    EXPECT_THAT(m_polkit->asked, ElementsAre(block, block, unblock, unblock));
    EXPECT_EQ(shell("ls -A /var/lib/stillgate/guard"), "");
}

TEST_F(Guard, largeBlockIsAppliedInOneCall)
{
    std::vector<std::string> domains;
    for (int i = 0; i < 100'000; ++i)
        domains.push_back("site-" + std::to_string(i) + ".example");
    EXPECT_EQ(replace(anna, "flexible", domains), "done");
    EXPECT_TRUE(hosts() == hostsWith(domains));
    EXPECT_GT(hosts().size(), 20'000'000U);
}

TEST_F(Guard, moreNamesThanFitAreRefusedBeforeTheyAreStored)
{
    const auto names = [](const std::string& firstLetter, int count) {
        std::string text = "\n# Stillgate Protected Sites\n";
        for (int i = 0; i < count; ++i)
            text += "127.0.0.1 " + firstLetter + std::to_string(10'000'000 + i) + "\n";
        return text + "# End Stillgate\n";
    };
    constexpr int most = 1'500'000;
    const std::string order = "ReplaceHostsBlock block - permanent";
    EXPECT_EQ(call(anna, order, names("a", most + 1)), "InvalidArgument");
    EXPECT_EQ(call(anna, order, names("a", most)), "done");
    EXPECT_EQ(call(anna, order, names("b", most)), "InvalidArgument") << "with what stands";
    EXPECT_EQ(call(ben, order, names("b", most)), "done");
    const auto size = std::filesystem::file_size("/etc/hosts");
    EXPECT_EQ(call(0, order, names("c", most)), "InvalidArgument") << "with the others'";
    EXPECT_FALSE(std::filesystem::exists("/var/lib/stillgate/guard/0/hosts-block"));
    EXPECT_EQ(std::filesystem::file_size("/etc/hosts"), size);
    EXPECT_EQ(replace(0, "permanent", {"c.example"}), "done") << "and others go on";
}

TEST_F(Guard, usersKeepEachOthersNames)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example", "both.example"}), "done");
    EXPECT_EQ(replace(ben, "flexible", {"b.example", "both.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example", "both.example"}));
    EXPECT_EQ(call(ben, "RemoveHostsBlock"), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "both.example"}));
    EXPECT_EQ(call(ben, "RemoveHostsBlock"), "done") << "which changes nothing of the other's";
    EXPECT_EQ(hosts(), hostsWith({"a.example", "both.example"}));
    EXPECT_EQ(call(ben, "Status"), "done false  false");
    EXPECT_EQ(call(anna, "Status"), "done false  true");
}

TEST_F(Guard, permanentNamesOnlyGrowUntilAnAdministratorAgrees)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    EXPECT_EQ(replace(anna, "permanent", {"b.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example"}));
    EXPECT_THAT(m_polkit->asked, testing::Each(std::string{block})) << "nobody is asked for the names that stay";

    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "AccessDenied");
    EXPECT_EQ(replace(anna, "flexible", {"a.example"}), "AccessDenied");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example"}));
    EXPECT_EQ(replace(anna, "flexible", {"c.example"}), "done") << "for the name that came";
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example", "c.example"}));
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "AccessDenied") << "and it is permanent as before";

    m_polkit->granted.insert(unblockPermanent);
    EXPECT_EQ(replace(anna, "flexible", {"c.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"c.example"}));
    m_polkit->granted.erase(unblockPermanent);
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "done");
    EXPECT_EQ(hosts(), original);
}

TEST_F(Guard, temporaryNamesGoAgainHoweverPermanentTheOthersAre)
{
    const auto order = [](const std::string& temporary, const std::vector<std::string>& domains) {
        return call(anna, "ReplaceHostsBlock block -" + temporary + " permanent", generateHostsEntries(domains));
    };
    EXPECT_EQ(order("q.example,www.q.example", {"q.example"}), "done");
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "AccessDenied") << "five of its names aren't temporary";
    m_polkit->granted.insert(unblockPermanent);
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "done");
    m_polkit->granted.erase(unblockPermanent);

    const std::string formsOfQ = "q.example,www.q.example,m.q.example,mobile.q.example,api.q.example,cdn.q.example,"
                                 "static.q.example,other.example";
    EXPECT_EQ(order(formsOfQ, {"q.example"}), "done");
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "done") << "nothing of it was permanent";
    EXPECT_EQ(hosts(), original);

    EXPECT_EQ(order(formsOfQ, {"a.example", "q.example"}), "done");
    killGuard();
    EXPECT_EQ(replace(ben, "flexible", {"b.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example", "q.example"})) << "they outlive the guard's process";
    EXPECT_EQ(order("", {"b.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example"})) << "and permanent names stay, whatever is asked for";
    EXPECT_EQ(order("a.example", {"a.example"}), "done");
    EXPECT_EQ(order("", {"b.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example"})) << "also those called temporary later";
}

TEST_F(Guard, rootNeedsNobodysConsent)
{
    m_polkit->granted.clear();
    EXPECT_EQ(replace(0, "permanent", {"a.example"}), "done");
    EXPECT_EQ(call(0, "RemoveHostsBlock"), "done");
    EXPECT_EQ(hosts(), original);
    EXPECT_THAT(m_polkit->asked, SizeIs(0));
    EXPECT_EQ(replace(anna, "flexible", {"a.example"}), "AccessDenied");
    EXPECT_EQ(call(anna, "ReplaceHostsBlock block - flexible", "garbage"), "AccessDenied") << "unread";
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "AccessDenied");
    EXPECT_EQ(call(anna, "EnableDNSProxy flexible"), "AccessDenied");
    EXPECT_EQ(call(anna, "DisableDNSProxy"), "AccessDenied");
}

TEST_F(Guard, whatIsNoSealedBlockChangesNothing)
{
    const auto whole = generateHostsEntries({"a.example"});
    const std::string unlike[] = {"", whole.substr(0, 40), whole + "x", "10.0.0.1 bank.example\n",
        "\n# Stillgate Protected Sites\n10.0.0.1 bank.example\n# End Stillgate\n"};
    for (const auto& bytes : unlike)
        EXPECT_EQ(call(anna, "ReplaceHostsBlock block - flexible", bytes), "InvalidArgument");
    for (const auto* kind : {"unsealed-block", "growing-block", "pipe"})
        EXPECT_EQ(call(anna, std::string{"ReplaceHostsBlock "} + kind + " - flexible", whole), "InvalidArgument")
            << kind;
    for (const auto* words : {"ReplaceHostsBlock text - flexible", "ReplaceHostsBlock", "Quit", "becameIdle"})
        EXPECT_EQ(call(anna, words, whole), "UnknownMethod") << words;
    EXPECT_EQ(hosts(), original);
}

TEST_F(Guard, waitingForAPersonHoldsUpNobodyElse)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    m_polkit->isAskingAPerson = true;
    UserCall removal{anna, "RemoveHostsBlock", {}};
    ASSERT_TRUE(becomes([&] { return m_polkit->openQuestions() == 1; }));
    EXPECT_EQ(replace(ben, "flexible", {"b.example"}), "done");
    EXPECT_EQ(replace(anna, "permanent", {"c.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example", "c.example"}));
    EXPECT_FALSE(removal.hasEnded());

    m_polkit->decide(true);
    EXPECT_TRUE(becomes([&] { return m_polkit->openQuestions() == 1; }))
        << "the consent was to what stood, not to what came since";
    m_polkit->decide(true);
    EXPECT_EQ(removal.result(), "done");
    EXPECT_EQ(hosts(), hostsWith({"b.example"}));
}

TEST_F(Guard, callsOfOneVerbShareAQuestion)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    m_polkit->isAskingAPerson = true;
    m_polkit->asked.clear();
    UserCall removals{anna, "--times 3 RemoveHostsBlock", {}};
    ASSERT_TRUE(becomes([&] { return m_polkit->openQuestions() == 1; }));
    EXPECT_EQ(call(anna, "Status"), "done false  true");
    m_polkit->decide(true);
    EXPECT_EQ(removals.result(), "donedonedone");
    EXPECT_THAT(m_polkit->asked, ElementsAre(unblockPermanent, unblock))
        << "and the others find nothing left but what anybody may clear away";
    EXPECT_EQ(hosts(), original);
}

TEST_F(Guard, consentToWhatStoodBeforeIsNoneToWhatStandsNow)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    m_polkit->isAskingAPerson = true;
    UserCall calls{anna, "RemoveHostsBlock and ReplaceHostsBlock block - permanent then RemoveHostsBlock",
        generateHostsEntries({"b.example"})};
    EXPECT_TRUE(becomes([&] { return m_polkit->openQuestions() == 2; })) << "the second shares no question";
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example"}));
    m_polkit->decide(false);
    EXPECT_EQ(calls.result(), "AccessDenieddoneAccessDenied");
}

TEST_F(Guard, oneUserCannotFillItWithCalls)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    m_polkit->isAskingAPerson = true;
    UserCall removals{anna, "--times 40 RemoveHostsBlock", {}};
    ASSERT_TRUE(becomes([&] { return m_polkit->openQuestions() == 1; }));
    EXPECT_EQ(call(anna, "Status"), "Busy");
    EXPECT_EQ(replace(ben, "flexible", {"b.example"}), "done");
    m_polkit->decide(false);
    EXPECT_THAT(removals.result(), testing::HasSubstr("AccessDenied"));
    EXPECT_EQ(call(anna, "Status"), "done false  true");
}

TEST_F(Guard, questionEndsWithItsCaller)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    m_polkit->isAskingAPerson = true;
    UserCall removal{anna, "RemoveHostsBlock", {}};
    ASSERT_TRUE(becomes([&] { return m_polkit->openQuestions() == 1; }));
    removal.die();
    EXPECT_TRUE(becomes([&] { return m_polkit->cancelled.size() == 1; }));
    m_polkit->decide(true);
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example"})) << "an answer that comes later is nobody's";
}

TEST_F(Guard, failureLeavesTheFileAndWhatIsToBeInIt)
{
    EXPECT_EQ(replace(anna, "flexible", {"a.example"}), "done");
    shell("mount -o remount,ro /etc");
    EXPECT_EQ(replace(anna, "flexible", {"a.example", "b.example"}), "Failed");
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "Failed");
    EXPECT_EQ(replace(ben, "permanent", {"b.example"}), "Failed");
    shell("mount -o remount,rw /etc");
    EXPECT_EQ(hosts(), hostsWith({"a.example"}));
    EXPECT_EQ(call(ben, "Status"), "done false  false");
    EXPECT_EQ(replace(ben, "flexible", {"c.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "c.example"})) << "nothing of what failed has stayed";
}

TEST_F(Guard, fullDiskLeavesTheFileAndTheRecords)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    shell("mv /var/lib/stillgate /var/lib/moved; mkdir /var/lib/stillgate;"
          "mount -t tmpfs -o size=64k full /var/lib/stillgate; cp -a /var/lib/moved/. /var/lib/stillgate/;"
          "dd if=/dev/zero of=/var/lib/stillgate/filler 2>/dev/null");
    EXPECT_EQ(replace(anna, "permanent", {"b.example"}), "Failed");
    EXPECT_EQ(hosts(), hostsWith({"a.example"}));
    EXPECT_EQ(shell("ls /var/lib/stillgate/guard/2001"), "hosts-block\n");
    shell("rm /var/lib/stillgate/filler");
    EXPECT_EQ(replace(anna, "permanent", {"b.example"}), "done");
    EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example"}));
    shell("umount -l /var/lib/stillgate; rm -rf /var/lib/moved");
}

TEST_F(Guard, killedAtAnyMomentItLosesNothing)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    const auto before = hosts();
    const auto after = hostsWith({"a.example", "b.example"});
    for (int milliseconds = 0; milliseconds < 60; milliseconds += 3) {
        putFile("/etc/hosts", before);
        shell("rm -rf /var/lib/stillgate/guard/2002");
        call(anna, "Status");
        UserCall interrupted{ben, "ReplaceHostsBlock block - flexible", generateHostsEntries({"b.example"})};
        shell("sleep " + std::to_string(milliseconds / 1000.0)); // where it is by then is what varies
        killGuard();
        const bool isDone = interrupted.result() == "done";
        EXPECT_THAT(hosts(), AnyOf(before, after));
        const bool isRecorded = std::filesystem::exists("/var/lib/stillgate/guard/2002/hosts-block");
        EXPECT_TRUE(isRecorded || !isDone);
        EXPECT_EQ(call(ben, "Status"), isRecorded ? "done false  true" : "done false  false");
        EXPECT_EQ(hosts(), isRecorded ? after : before) << "the next process has settled it";
    }
}

TEST_F(Guard, whatKilledWritesHaveLeftGoesLater)
{
    EXPECT_EQ(replace(anna, "flexible", {"a.example"}), "done");
    killGuard();
    shell("cd /var/lib/stillgate; mkdir -p removed.abcdef/file; touch -d '1 hour ago' guard/2001/hosts-block.abcdef "
          "/etc/hosts.stillgate.abcdef /etc/hosts.stillgate.abcdef.old; touch /etc/hosts.stillgate.ghijkl");
    EXPECT_EQ(call(anna, "Status"), "done false  true");
    EXPECT_TRUE(becomes([] {
        return shell("cd /var/lib/stillgate; ls -d removed.* guard/2001/* /etc/hosts.stillgate.* 2>/dev/null") ==
            "/etc/hosts.stillgate.abcdef.old\n/etc/hosts.stillgate.ghijkl\nguard/2001/hosts-block\n";
    })) << "but for a copy that somebody may need, and for a write under way";
    shell("rm /etc/hosts.stillgate.*");
}

TEST_F(Guard, damagedRecordTakesNoNameAwayAndStopsNobody)
{
    EXPECT_EQ(replace(anna, "permanent", {"a.example"}), "done");
    for (const auto* damaged : {"permanent\n\n# Stillgate Prot", "", "flex"}) {
        putFile("/var/lib/stillgate/guard/2001/hosts-block", damaged);
        EXPECT_EQ(replace(ben, "flexible", {"b.example"}), "done") << damaged;
        EXPECT_EQ(hosts(), hostsWith({"a.example", "b.example"}));
        EXPECT_TRUE(std::filesystem::exists("/var/lib/stillgate/guard/2001/hosts-block.damaged"));
        EXPECT_EQ(call(anna, "RemoveHostsBlock"), "AccessDenied");
    }
    m_polkit->granted.insert(unblockPermanent);
    EXPECT_EQ(call(anna, "RemoveHostsBlock"), "done");
    EXPECT_EQ(hosts(), hostsWith({"b.example"}));
    putFile("/var/lib/stillgate/guard/2002/dns-proxy", "damaged");
    EXPECT_EQ(call(ben, "Status"), "done false  true");
}

} // namespace stillgate
