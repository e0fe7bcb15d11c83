#include "Blocking/HostsFileService.h"

#include "Platform/HostsBlock.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryHostsFileWriter.h"
#include "Platform/Memory/MemoryLog.h"
#include "Platform/Memory/MemoryUserDefaults.h"

#include <gmock/gmock.h>

namespace stillgate
{

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

    m_service.applyBlocks({"a.example"}, HostsFileService::Rewrite::always);
    EXPECT_THAT(m_service.getBlockedDomains(), Not(Contains("b.example")));
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

} // namespace stillgate
