#include "Blocking/HostsFileRepair.h"
#include "Platform/HostsBlock.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryHostsFileWriter.h"
#include "Platform/Memory/MemoryLog.h"
#include "Platform/Memory/MemoryUserDefaults.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class HostsFile : public testing::Test
{
protected:
    HostsFile()
    {
        m_files.put(hostsPath, original);
        m_writer.isPermitted = true;
    }

    [[nodiscard]] const std::string& hosts() const { return m_files.at(hostsPath); }

    [[nodiscard]] std::string key() const { return m_defaults.string("sg_hosts_hash").value_or(""); }

    void expectState(bool active, int count)
    {
        EXPECT_EQ(m_service.isActive.value(), active);
        EXPECT_EQ(m_service.blockedCount.value(), count);
    }

    using Rewrite = HostsFileService::Rewrite;

    static constexpr auto original = "127.0.0.1 localhost\n";

    MemoryFileManager m_files;
    MemoryHostsFileWriter m_writer{m_files};
    MemoryUserDefaults m_defaults;
    MemoryHost m_host;
    MemoryLog m_log;
    HostsFileService m_service{m_writer, m_files, m_defaults, m_host, m_log};
};

TEST_F(HostsFile, unchangedListIsNotWrittenAgain)
{
    m_service.applyBlocks({"b.example", "A.example"});
    EXPECT_EQ(key(), "A.example,b.example");
    expectState(true, 2);

    m_service.applyBlocks({"A.example", "b.example"});
    HostsFileService restarted{m_writer, m_files, m_defaults, m_host, m_log};
    restarted.applyBlocks({"A.example", "b.example"});

    EXPECT_EQ(m_writer.requests.size(), 1U);
    EXPECT_TRUE(restarted.isActive);
    EXPECT_EQ(restarted.blockedCount.value(), 2);
}

TEST_F(HostsFile, smallerListKeepsFile)
{
    m_service.applyBlocks({"a.example", "b.example"});
    const auto before = hosts();
    m_service.applyBlocks({"B.example"});
    EXPECT_EQ(m_writer.requests.size(), 1U);
    EXPECT_EQ(hosts(), before);
    EXPECT_EQ(key(), "B.example");
    expectState(true, 1);

    m_service.applyBlocks({"a.example"}, Rewrite::always);
    EXPECT_THAT(m_service.getBlockedDomains(), Not(Contains("b.example")));
}

TEST_F(HostsFile, namesThatAreToGoDoSoInTheEnd)
{
    m_service.applyBlocks({"a.example", "b.example"});
    m_writer.isPermitted = false;
    m_service.applyBlocks({"a.example"}, Rewrite::always);
    EXPECT_THAT(m_service.getBlockedDomains(), Contains("b.example"));
    m_writer.isPermitted = true;
    m_service.applyBlocks({"a.example"}, Rewrite::ifListIsMissing);
    EXPECT_THAT(m_service.getBlockedDomains(), Not(Contains("b.example"))) << "the write that failed is made up for";

    m_service.applyBlocks({"a.example", "b.example", "c.example"});
    m_writer.hold();
    m_service.applyBlocks({"a.example", "b.example", "d.example"});
    m_service.applyBlocks({"a.example"}, Rewrite::always);
    m_service.applyBlocks({"a.example"}, Rewrite::ifListIsMissing);
    m_writer.finishHeld();
    EXPECT_THAT(m_service.getBlockedDomains(), Not(Contains("b.example"))) << "also if another list has come since";
}

TEST_F(HostsFile, emptyListAndRemovalTakeTheBlockAway)
{
    m_service.applyBlocks({"a.example"});
    m_service.applyBlocks({});
    EXPECT_EQ(hosts(), original);
    EXPECT_EQ(key(), "");
    expectState(false, 0);

    m_service.applyBlocks({"a.example"});
    EXPECT_THAT(m_service.getBlockedDomains(), Contains("a.example")) << "the stored list must not stand in the way";
}

TEST_F(HostsFile, invalidDomainsLeaveTheMarkersAlone)
{
    m_service.applyBlocks({"not a domain"});
    EXPECT_EQ(hosts(), "127.0.0.1 localhost\n\n# Stillgate Protected Sites\n# End Stillgate\n");
    expectState(true, 1);
}

TEST_F(HostsFile, failedWriteIsLoggedOnceAndTriedAgainByTheNextCall)
{
    m_writer.isPermitted = false;
    m_writer.hold();
    m_service.applyBlocks({"a.example"});
    m_service.applyBlocks({"a.example"}); // the same list meanwhile is no reason for another try
    m_writer.finishHeld();
    EXPECT_THAT(m_log.lines, ElementsAre("[HostsFile] Failed to apply blocks"));
    EXPECT_EQ(key(), "");
    EXPECT_EQ(hosts(), original);
    expectState(false, 0);

    m_writer.isPermitted = true;
    m_service.applyBlocks({"a.example"});
    expectState(true, 1);
}

TEST_F(HostsFile, lastListThatArrivesDuringAWriteFollowsIt)
{
    m_writer.hold();
    m_service.applyBlocks({"a.example"});
    m_service.applyBlocks({"b.example"});
    m_service.applyBlocks({"c.example", "d.example"});
    expectState(true, 2);
    EXPECT_EQ(m_writer.requests.size(), 1U);

    m_writer.finishHeld();
    EXPECT_EQ(m_writer.requests.size(), 2U);
    EXPECT_THAT(m_service.getBlockedDomains(), Contains("d.example"));
    EXPECT_THAT(m_service.getBlockedDomains(), Not(Contains("a.example")));
    EXPECT_EQ(key(), "c.example,d.example");
    expectState(true, 2);
}

TEST_F(HostsFile, earlierListThatArrivesDuringAWriteIsNotLost)
{
    m_service.applyBlocks({"a.example"});
    m_writer.hold();
    m_service.applyBlocks({"b.example"});
    m_service.applyBlocks({"a.example"}); // what the stored key still names
    m_writer.finishHeld();
    EXPECT_THAT(m_service.getBlockedDomains(), Contains("a.example"));
}

TEST_F(HostsFile, removalDuringAWriteComesBeforeTheListThatFollows)
{
    m_writer.hold();
    m_service.applyBlocks({"a.example"});
    m_service.removeBlocks();
    m_writer.finishHeld();
    EXPECT_EQ(hosts(), original);
    EXPECT_EQ(key(), "") << "the write that ended meanwhile has stored its list";
    expectState(false, 0);

    m_writer.hold();
    m_service.applyBlocks({"a.example"});
    m_service.removeBlocks();
    m_service.applyBlocks({"b.example"});
    m_writer.finishHeld();
    EXPECT_THAT(m_service.getBlockedDomains(), Contains("b.example"));
    EXPECT_THAT(m_service.getBlockedDomains(), Not(Contains("a.example")));
}

TEST_F(HostsFile, unreadableFileHasNoBlockedDomains)
{
    m_service.applyBlocks({"a.example"});
    m_files.files[hostsPath] += "# caf\xe9\n";
    EXPECT_THAT(m_service.getBlockedDomains(), IsEmpty()) << "not UTF-8";
    m_service.applyBlocks({"a.example", "b.example"});
    EXPECT_TRUE(hosts().contains("127.0.0.1 b.example\n"));
    EXPECT_TRUE(hosts().contains("# caf\xe9\n"));

    m_files.unreadable.insert(hostsPath);
    EXPECT_THAT(m_service.getBlockedDomains(), IsEmpty());
}

/// The file is looked at, with a clock that a test moves.
class HostsFileRepairs : public HostsFile
{
protected:
    HostsFileRepairs()
    {
        m_service.applyBlocks({"b.example", "a.example"});
        m_intact = hosts();
        m_names = m_service.getBlockedDomains();
    }

    /// What somebody else makes of the file, from what it is.
    void damage(const std::string& text) { m_files.put(hostsPath, text); }

    [[nodiscard]] std::string changed(const std::string& from, const std::string& to) const
    {
        auto text = m_intact;
        return text.replace(text.find(from), from.size(), to);
    }

    void expectRepair(const std::string& damaged)
    {
        SCOPED_TRACE(damaged);
        damage(damaged);
        m_time.advance(1s);
        EXPECT_EQ(m_service.getBlockedDomains(), m_names);
        EXPECT_TRUE(m_service.isIntact());
        EXPECT_TRUE(hosts().starts_with(original));
    }

    ManualTime m_time;
    std::string m_intact;
    std::vector<std::string> m_names;
    HostsFileRepair m_repair{m_service, m_files, m_time, m_log};
};

TEST_F(HostsFileRepairs, everyDamageIsMendedWithinASecond)
{
    expectRepair(original);
    expectRepair(changed("127.0.0.1 a.example\n", ""));
    expectRepair(changed("127.0.0.1 a.example\n", "10.0.0.1 a.example\n"));
    expectRepair(changed("127.0.0.1 a.example\n", "#127.0.0.1 a.example\n"));
    expectRepair(changed("127.0.0.1 a.example\n", "127.0.0.1 a.example other.example\n"));
    expectRepair(changed("# Stillgate Protected Sites", "# Stillgate"));
    expectRepair(changed("# End Stillgate\n", ""));
    expectRepair(changed("# End Stillgate\n", "# End Stillgate\n# Stillgate Protected Sites\n"));
    EXPECT_EQ(m_writer.requests.size(), 9U);
}

TEST_F(HostsFileRepairs, fileThatIsGoneComesBackWithTheBlock)
{
    EXPECT_TRUE(m_files.remove(hostsPath));
    m_time.advance(1s);
    EXPECT_EQ(m_service.getBlockedDomains(), m_names);
}

TEST_F(HostsFileRepairs, whatIsNoDamageCostsNoWrite)
{
    m_time.advance(1h);
    damage("10.0.0.1 printer\n" + m_intact);
    m_time.advance(1h);
    damage(changed("127.0.0.1 a.example\n", "127.0.0.1 a.another-accounts.example\n127.0.0.1 a.example\n"));
    m_time.advance(1h);
    EXPECT_EQ(m_writer.requests.size(), 1U);
    EXPECT_THAT(m_log.lines, IsEmpty());

    m_service.removeBlocks();
    damage(original);
    m_time.advance(1h);
    EXPECT_EQ(m_writer.requests.size(), 2U) << "nothing is to stand there any more";
}

TEST_F(HostsFileRepairs, namesThatNobodyWantsDoNotComeBack)
{
    m_service.applyBlocks({"a.example"}, Rewrite::ifListIsMissing);
    EXPECT_EQ(hosts(), m_intact);
    damage(changed("127.0.0.1 b.example\n", ""));
    m_time.advance(1s);
    EXPECT_EQ(m_writer.requests.size(), 1U);
    damage(original);
    m_time.advance(1s);
    EXPECT_THAT(m_service.getBlockedDomains(), Contains("a.example"));
    EXPECT_THAT(m_service.getBlockedDomains(), Not(Contains("b.example")));
}

TEST_F(HostsFileRepairs, partOfTheListLeavesTheRestWanted)
{
    m_service.applyBlocks({"a.example"}, Rewrite::ifPartIsMissing);
    expectRepair(changed("127.0.0.1 b.example\n", ""));
    expectRepair(original);
}

TEST_F(HostsFileRepairs, startLooksOnce)
{
    damage(original);
    HostsFileService restarted{m_writer, m_files, m_defaults, m_host, m_log};
    restarted.applyBlocks({"a.example", "b.example"});
    EXPECT_EQ(hosts(), original) << "the stored list is believed";
    ManualTime time;
    const HostsFileRepair repair{restarted, m_files, time, m_log};
    time.advance(1s);
    EXPECT_EQ(restarted.getBlockedDomains(), m_names);
}

TEST_F(HostsFileRepairs, triesAgainWhenItCouldNot)
{
    m_writer.isPermitted = false; // a full disk
    damage(original);
    m_time.advance(1s);
    EXPECT_EQ(hosts(), original);
    m_time.advance(1h);
    EXPECT_LT(m_writer.requests.size(), 25U) << "nobody is asked every ten seconds for ever";
    m_writer.isPermitted = true;
    m_time.advance(5min);
    EXPECT_EQ(m_service.getBlockedDomains(), m_names);
}

TEST_F(HostsFileRepairs, nameOfTheMachineIsMissedByNobody)
{
    m_service.applyBlocks({"a.example", m_host.name()});
    auto text = hosts();
    const auto line = "127.0.0.1 " + m_host.name() + "\n";
    damage(text.erase(text.find(line), line.size()));
    EXPECT_TRUE(m_service.isIntact()) << "the guard leaves it out";
}

TEST_F(HostsFile, anotherPermanenceIsWrittenThoughTheListIsTheSame)
{
    m_service.applyBlocks({"a.example"});
    m_service.setPermanence(Permanence::permanent);
    m_service.applyBlocks({"a.example"});
    EXPECT_EQ(m_writer.permanence, Permanence::permanent);
    m_service.applyBlocks({"a.example"});
    HostsFileService restarted{m_writer, m_files, m_defaults, m_host, m_log};
    restarted.setPermanence(Permanence::permanent);
    restarted.applyBlocks({"a.example"});
    EXPECT_EQ(m_writer.requests.size(), 2U);
    restarted.setPermanence(Permanence::flexible);
    restarted.applyBlocks({"a.example"});
    EXPECT_EQ(m_writer.permanence, Permanence::flexible);
}

} // namespace stillgate
