#include "App/BlockModalWindowController.h"
#include "Blocking/HostsEntries.h"
#include "Blocking/HostsFileRepair.h"
#include "Blocking/ProcessMonitorService.h"
#include "Platform/HostsBlock.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryBrowserScripting.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryHostsFileWriter.h"
#include "Platform/Memory/MemoryLog.h"
#include "Platform/Memory/MemoryUserDefaults.h"
#include "Platform/Memory/MemoryUserNotifications.h"
#include "Platform/Memory/MemoryWorkspace.h"
#include "tests/support/FakeBackend.h"
#include "tests/support/FakeShell.h"

#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The monitor over a hosts file in memory, at noon.
class QuickBlocks : public testing::Test
{
protected:
    QuickBlocks()
    {
        m_files.put(hostsPath, original);
        m_writer.isPermitted = true;
        m_blockModal.showIn(m_windows);
        m_monitor.setConfiguration({.blockedProcesses = {}});
    }

    void start(const std::set<std::string>& domains) { m_monitor.startQuickBlock({}, domains, 30); }

    void stop() { m_monitor.stopQuickBlock(); }

    [[nodiscard]] const std::string& hosts() const { return m_files.at(hostsPath); }

    [[nodiscard]] std::vector<std::string> blocked() const { return m_hostsFile.getBlockedDomains(); }

    /// The names that a list stands for.
    static std::vector<std::string> namesOf(const std::vector<std::string>& domains)
    {
        const HostNames names{domains};
        return {names.sorted().begin(), names.sorted().end()};
    }

    static bool contains(const std::vector<std::string>& names, const std::string& name)
    {
        return std::ranges::find(names, name) != names.end();
    }

    [[nodiscard]] bool isRunning() const { return m_monitor.activeQuickBlock.value().has_value(); }

    [[nodiscard]] const std::vector<std::string>& told(const std::string& app) { return m_workspace.app(app).told; }

    using Rewrite = HostsFileService::Rewrite;

    static constexpr auto original = "127.0.0.1 localhost\n";
    static constexpr auto chess = "org.chess";

    ManualTime m_time;
    MemoryHost m_host;
    MemoryFileManager m_files;
    MemoryHostsFileWriter m_writer{m_files};
    MemoryUserDefaults m_defaults;
    MemoryLog m_log;
    HostsFileService m_hostsFile{m_writer, m_files, m_defaults, m_host, m_log};
    MemoryWorkspace m_workspace;
    MemoryBrowserScripting m_browsers;
    FakeBackend m_backend;
    FakeWindowFactory m_windows;
    BlockModalWindowController m_blockModal{m_backend};
    MemoryUserNotifications m_userNotifications;
    ProcessMonitorService m_monitor{
        {m_workspace, m_browsers, m_blockModal, m_hostsFile, m_userNotifications, m_time, m_time, m_host}};
};

TEST_F(QuickBlocks, appIsStoppedFromTheStartToTheEnd)
{
    m_monitor.startMonitoring();
    m_workspace.bringToFront("org.Chess");
    m_monitor.startQuickBlock({"ORG.chess"}, {}, 15);
    const QuickBlockSession expected{
        .bundleIds = {chess}, .domains = {}, .expiresAt = m_time.now() + 15min, .durationMinutes = 15};
    EXPECT_EQ(m_monitor.activeQuickBlock.value(), expected);
    EXPECT_THAT(told("org.Chess"), ElementsAre("hide")) << "it was in front";
    EXPECT_EQ(m_windows.blockModals.at(0).appName, "org.Chess");
    EXPECT_TRUE(m_windows.blockModals.at(0).allowBypass);
    m_time.advance(0ms);
    EXPECT_TRUE(m_windows.isPrepared);
    m_windows.blockModalActions.onDismiss();

    m_time.advance(15min - 1s);
    m_workspace.bringToFront("org.Chess");
    EXPECT_THAT(m_windows.blockModals, SizeIs(2));
    m_windows.blockModalActions.onDismiss();
    EXPECT_THAT(m_userNotifications.posted, IsEmpty());
    m_time.advance(1s);
    EXPECT_FALSE(isRunning());
    const MemoryUserNotifications::Notification ended{"Stillgate", "Quick block session ended."};
    EXPECT_THAT(m_userNotifications.posted, ElementsAre(ended));
    m_workspace.bringToFront("org.Chess");
    EXPECT_THAT(m_windows.blockModals, SizeIs(2));
    EXPECT_EQ(m_monitor.blockedAppAttempts.value(), 2);
}

TEST_F(QuickBlocks, betweenItsTimeAndItsEndOnlyAHiddenAppIsStopped)
{
    m_monitor.startMonitoring();
    m_monitor.startQuickBlock({chess, "org.poker"}, {}, 15);
    m_time.setCivilTime(m_time.now() + 15min);
    m_workspace.bringToFront(chess);
    m_workspace.launchHidden("org.poker");
    EXPECT_THAT(told(chess), IsEmpty());
    EXPECT_THAT(told("org.poker"), ElementsAre("terminate"));
    EXPECT_THAT(m_windows.blockModals, IsEmpty());
}

TEST_F(QuickBlocks, endsByTheCivilClock)
{
    start({"casino.example"});
    const auto begin = m_time.now();
    m_time.setCivilTime(begin - 24h);
    m_time.advance(1h);
    EXPECT_TRUE(isRunning());
    m_time.setCivilTime(begin + 30min - 1s);
    m_time.advance(1s);
    EXPECT_FALSE(isRunning());
    EXPECT_EQ(hosts(), original);
    EXPECT_EQ(m_time.pendingTimers(), 0U);
}

TEST_F(QuickBlocks, isSetUpBeforeAnybodyMonitorsAndEndsWithThat)
{
    m_workspace.bringToFront(chess);
    m_monitor.startQuickBlock({chess}, {"casino.example"}, 15);
    EXPECT_EQ(blocked(), namesOf({"casino.example"}));
    EXPECT_THAT(told(chess), IsEmpty());
    EXPECT_FALSE(m_monitor.isMonitoring);
    m_monitor.startMonitoring();
    EXPECT_TRUE(m_monitor.isMonitoring);
    EXPECT_THAT(told(chess), ElementsAre("hide"));

    m_monitor.stopMonitoring();
    EXPECT_FALSE(m_monitor.isMonitoring);
    EXPECT_FALSE(isRunning());
    EXPECT_EQ(hosts(), original);
    EXPECT_THAT(m_userNotifications.posted, IsEmpty()) << "nobody is told of what was done by hand";
}

TEST_F(QuickBlocks, appsAloneLeaveTheFileAlone)
{
    m_monitor.startQuickBlock({chess}, {}, 15);
    stop();
    m_hostsFile.applyBlocks({"a.example"});
    m_monitor.startQuickBlock({chess}, {}, 15);
    m_monitor.startQuickBlock({"org.poker"}, {}, 15);
    m_time.advance(15min);
    EXPECT_FALSE(isRunning());
    EXPECT_THAT(m_writer.requests, SizeIs(1));
}

TEST_F(QuickBlocks, fileIsAfterwardsWhatItWas)
{
    const struct
    {
        std::vector<std::string> list;
        std::set<std::string> sites;
        Permanence permanence;
    } cases[] = {
        {{}, {"casino.example"}, Permanence::flexible},
        {{"b.example", "A.example"}, {"casino.example", "twitter.com"}, Permanence::flexible},
        {{"casino.example"}, {"casino.example"}, Permanence::flexible},
        {{"x.com", "www.twitter.com"}, {"twitter.com"}, Permanence::permanent},
        {{"a.example"}, {"not a domain"}, Permanence::flexible},
    };

    for (const auto& [list, sites, permanence] : cases) {
        SCOPED_TRACE(testing::PrintToString(list) + " and " + testing::PrintToString(sites));
        m_hostsFile.setPermanence(permanence);
        if (!list.empty())
            m_hostsFile.applyBlocks(list);
        const auto before = hosts();
        const auto settings = m_defaults.strings;
        auto all = list;
        all.insert(all.end(), sites.begin(), sites.end());

        for (const auto* which : {"first", "once more"}) {
            SCOPED_TRACE(which);
            start(sites);
            EXPECT_EQ(blocked(), namesOf(all));
            EXPECT_EQ(m_writer.permanence, permanence);
            for (const auto& name : namesOf(all))
                EXPECT_NE(contains(m_writer.temporaryNames, name), contains(namesOf(list), name)) << name;
            stop();
            EXPECT_EQ(hosts(), before);
            EXPECT_THAT(m_writer.temporaryNames, IsEmpty());
            EXPECT_EQ(m_writer.permanence, permanence);
        }
        if (!list.empty())
            EXPECT_EQ(m_defaults.strings, settings) << "the list is known as before";
        EXPECT_EQ(m_hostsFile.isActive, !list.empty());
        EXPECT_EQ(m_hostsFile.blockedCount.value(), list.size());
        m_hostsFile.removeBlocks();
    }
}

TEST_F(QuickBlocks, compileMeanwhileChangesTheListAlone)
{
    using Domains = std::vector<std::string>;

    const struct
    {
        const char* what;
        Domains before;
        Domains compiled;
        Domains during; ///< without the quick block's
        Domains after;
    } cases[] = {
        {"the same", {"a.example"}, {"a.example"}, {"a.example"}, {"a.example"}},
        {"more", {"a.example"}, {"a.example", "b.example"}, {"a.example", "b.example"}, {"a.example", "b.example"}},
        {"less, which takes nothing out of a file", {"a.example", "b.example"}, {"a.example"},
            {"a.example", "b.example"}, {"a.example", "b.example"}},
        {"a name that the quick block has too", {"a.example"}, {"a.example", "q.example"}, {"a.example"},
            {"a.example", "q.example"}},
        {"nothing but that name", {}, {"q.example"}, {}, {"q.example"}},
    };

    for (const auto& [what, before, compiled, during, after] : cases) {
        SCOPED_TRACE(what);
        if (!before.empty())
            m_hostsFile.applyBlocks(before);
        start({"q.example"});
        m_hostsFile.applyBlocks(compiled, Rewrite::ifListIsMissing);
        m_hostsFile.applyBlocks(compiled, Rewrite::ifListIsMissing);
        auto all = during;
        all.emplace_back("q.example");
        EXPECT_EQ(blocked(), namesOf(all));
        stop();
        EXPECT_EQ(blocked(), namesOf(after));
        const auto writes = m_writer.requests.size();
        m_hostsFile.applyBlocks(compiled, Rewrite::ifListIsMissing);
        EXPECT_THAT(m_writer.requests, SizeIs(writes)) << "nothing is left to do";
        m_hostsFile.removeBlocks();
    }
}

TEST_F(QuickBlocks, emptyListTakesTheRulesAwayAndASignOutEverything)
{
    m_hostsFile.applyBlocks({"a.example"});
    start({"q.example"});
    m_hostsFile.applyBlocks({});
    EXPECT_EQ(blocked(), namesOf({"q.example"}));
    m_hostsFile.removeBlocks();
    EXPECT_EQ(hosts(), original);
    m_hostsFile.applyBlocks({"a.example"});
    EXPECT_EQ(blocked(), namesOf({"a.example"}));
}

TEST_F(QuickBlocks, nextSessionTakesThePlaceOfTheFirst)
{
    m_hostsFile.applyBlocks({"a.example"});
    const auto before = hosts();
    start({"p.example", "q.example"});
    start({"q.example", "r.example"});
    EXPECT_EQ(blocked(), namesOf({"a.example", "q.example", "r.example"}));
    m_monitor.startQuickBlock({chess}, {}, 60);
    EXPECT_EQ(hosts(), before);
    m_time.advance(30min);
    EXPECT_TRUE(isRunning()) << "the first one's clock has stopped";
    m_time.advance(30min);
    EXPECT_THAT(m_userNotifications.posted, SizeIs(1));
}

TEST_F(QuickBlocks, whatHappensDuringAWriteFollowsIt)
{

    const struct
    {
        const char* what;
        std::function<void()> steps;
        std::vector<std::string> names;
    } cases[] = {
        {"started",
            [&] {
                m_hostsFile.applyBlocks({"b.example"});
                start({"q.example"});
            },
            {"b.example", "q.example"}},
        {"started and stopped",
            [&] {
                m_hostsFile.applyBlocks({"b.example"});
                start({"q.example"});
                stop();
            },
            {"b.example"}},
        {"stopped before it stood there",
            [&] {
                start({"q.example"});
                stop();
            },
            {"a.example"}},
        {"compiled",
            [&] {
                start({"q.example"});
                m_hostsFile.applyBlocks({"c.example"});
            },
            {"c.example", "q.example"}},
        {"compiled, and stopped",
            [&] {
                start({"q.example"});
                m_hostsFile.applyBlocks({"c.example"});
                stop();
            },
            {"c.example"}},
        {"replaced",
            [&] {
                start({"q.example"});
                start({"r.example"});
            },
            {"a.example", "r.example"}},
        {"signed out",
            [&] {
                start({"q.example"});
                m_monitor.stopMonitoring();
                m_hostsFile.removeBlocks();
            },
            {}},
        {"signed out, and in",
            [&] {
                start({"q.example"});
                m_hostsFile.removeBlocks();
                start({"r.example"});
            },
            {"r.example"}},
    };

    for (const auto& [what, steps, names] : cases) {
        SCOPED_TRACE(what);
        m_hostsFile.applyBlocks({"a.example"});
        m_writer.hold();
        steps();
        m_writer.finishHeld();
        EXPECT_EQ(blocked(), namesOf(names));
        EXPECT_FALSE(m_hostsFile.isWriting());
        EXPECT_EQ(m_hostsFile.isActive, !names.empty());
        EXPECT_EQ(m_hostsFile.blockedCount.value(), names.size());
        stop();
        m_hostsFile.removeBlocks();
        EXPECT_EQ(hosts(), original);
    }
}

TEST_F(QuickBlocks, listLosesNothingWhenAPartOfItComesMeanwhile)
{
    const std::vector<std::string> all{"a.example", "b.example"};
    const std::vector<std::string> allAndQuick{"a.example", "b.example", "q.example"};
    for (const auto rewrite : {Rewrite::ifPartIsMissing, Rewrite::ifListIsMissing}) {
        SCOPED_TRACE(static_cast<int>(rewrite));
        m_writer.hold();
        m_hostsFile.applyBlocks(all);
        m_hostsFile.applyBlocks({"a.example"}, rewrite);
        start({"q.example"});
        m_writer.finishHeld();
        EXPECT_EQ(blocked(), namesOf(allAndQuick));

        m_hostsFile.setPermanence(Permanence::permanent);
        m_writer.hold();
        m_hostsFile.applyBlocks(all);
        m_hostsFile.applyBlocks({"a.example"}, rewrite);
        stop();
        m_writer.finishHeld();
        EXPECT_EQ(blocked(), namesOf(all));

        m_writer.isPermitted = false;
        start({"q.example"});
        m_writer.isPermitted = true;
        m_hostsFile.applyBlocks({"a.example"}, rewrite);
        EXPECT_EQ(blocked(), namesOf(allAndQuick));
        m_hostsFile.setPermanence(Permanence::flexible);
        m_hostsFile.removeBlocks();
        stop();
    }
}

TEST_F(QuickBlocks, listThatWasTakenAwayDoesNotComeBackAtItsEnd)
{
    for (const bool isPermitted : {true, false}) {
        SCOPED_TRACE(isPermitted);
        m_hostsFile.applyBlocks({"a.example"});
        start({"q.example"});
        m_writer.isPermitted = isPermitted;
        m_writer.hold();
        m_hostsFile.applyBlocks({}, Rewrite::always);
        m_writer.finishHeld();
        m_writer.isPermitted = true;
        m_writer.hold();
        start({"r.example"});
        stop();
        m_writer.finishHeld();
        EXPECT_EQ(hosts(), original);
    }
    m_hostsFile.applyBlocks({"a.example"});
    start({"q.example"});
    m_writer.hold();
    m_hostsFile.applyBlocks({}, Rewrite::always);
    start({"r.example"});
    m_writer.finishHeld();
    EXPECT_EQ(blocked(), namesOf({"r.example"})) << "nor when another begins during that write";
}

TEST_F(QuickBlocks, listOfAnEarlierRunStaysThoughNothingIsCompiledYet)
{
    m_hostsFile.applyBlocks({"b.example", "a.example"});
    const auto before = hosts();
    HostsFileService restarted{m_writer, m_files, m_defaults, m_host, m_log};
    restarted.setTemporaryDomains({"q.example"});
    EXPECT_EQ(blocked(), namesOf({"a.example", "b.example", "q.example"}));
    restarted.setTemporaryDomains({});
    EXPECT_EQ(hosts(), before);
}

TEST_F(QuickBlocks, sitesOfARunThatCrashedGoWithTheNextStart)
{
    m_hostsFile.setPermanence(Permanence::permanent);
    for (const auto& list : {std::vector<std::string>{}, {"a.example"}}) {
        if (!list.empty())
            m_hostsFile.applyBlocks(list);
        const auto before = hosts();
        start({"q.example"});
        HostsFileService restarted{m_writer, m_files, m_defaults, m_host, m_log};
        const HostsFileRepair repair{restarted, m_files, m_time, m_log};
        m_time.advance(1s);
        EXPECT_EQ(hosts(), before);
        EXPECT_EQ(m_writer.permanence == Permanence::permanent, !list.empty()) << "as it was";
        const auto writes = m_writer.requests.size();
        m_time.advance(1min);
        EXPECT_THAT(m_writer.requests, SizeIs(writes));
        stop();
    }
}

TEST_F(QuickBlocks, failedWriteLeavesTheAppsBlockedAndIsMadeUpFor)
{
    m_hostsFile.applyBlocks({"a.example"});
    const auto before = hosts();
    m_writer.isPermitted = false;
    m_monitor.startMonitoring();
    m_monitor.startQuickBlock({chess}, {"q.example"}, 30);
    EXPECT_THAT(m_log.lines, ElementsAre("[HostsFile] Failed to apply blocks"));
    EXPECT_FALSE(m_hostsFile.isActive);
    m_workspace.bringToFront(chess);
    EXPECT_THAT(told(chess), ElementsAre("hide"));
    m_writer.isPermitted = true;
    m_hostsFile.applyBlocks({"a.example"});
    EXPECT_THAT(blocked(), Contains("q.example")) << "with the next compile, though the list is the same";

    m_writer.isPermitted = false;
    stop();
    EXPECT_THAT(blocked(), Contains("q.example"));
    m_writer.isPermitted = true;
    m_hostsFile.applyBlocks({"a.example"});
    EXPECT_EQ(hosts(), before);

    m_writer.isPermitted = false;
    m_writer.hold();
    m_hostsFile.applyBlocks({"b.example"});
    start({"q.example"});
    const auto writes = m_writer.requests.size();
    m_writer.finishHeld();
    EXPECT_THAT(m_writer.requests, SizeIs(writes + 1)) << "not what has just failed, but more";
}

TEST_F(QuickBlocks, sitesAreRepairedAsLongAsItLasts)
{
    const HostsFileRepair repair{m_hostsFile, m_files, m_time, m_log};
    for (const auto& list : {std::vector<std::string>{}, {"a.example"}}) {
        SCOPED_TRACE(testing::PrintToString(list));
        if (!list.empty())
            m_hostsFile.applyBlocks(list);
        const auto before = hosts();
        start({"q.example"});
        const auto during = hosts();
        m_files.put(hostsPath, before);
        m_time.advance(1s);
        EXPECT_EQ(hosts(), during);
        m_files.put(hostsPath, original);
        m_time.advance(1s);
        EXPECT_EQ(hosts(), during);

        stop();
        EXPECT_EQ(hosts(), before);
        const auto writes = m_writer.requests.size();
        m_time.advance(1h);
        EXPECT_THAT(m_writer.requests, SizeIs(writes)) << "nothing of it is missed afterwards";
    }
}

} // namespace stillgate
