#include "Blocking/HostsEntries.h"
#include "Platform/HostsBlock.h"
#include "tests/desktop/PrivateWorld.h"

#include <QTcpServer>
#include <gmock/gmock.h>

namespace stillgate
{

using namespace test;
using testing::HasSubstr;
using testing::Not;

namespace
{

constexpr auto ownRules = R"(
    {"id":"1","category":"custom","enabled":true,"customDomains":["Example.com","twitter.com"],
     "excludedDomains":[],"unblockPolicy":"flexible","createdAt":789012345.5},
    {"id":"2","category":"gambling","enabled":false,"customDomains":["off.example"],"excludedDomains":[],
     "unblockPolicy":"permanent"})";

std::string stateWith(const std::string& rules)
{
    return R"({"streak":{"currentStreakDays":3,"longestStreakDays":9},"blockRules":[)" + rules + R"(],
        "devices":[{"id":"d","deviceName":"Desk","platform":"macos","isActive":true}],
        "schedules":[{"id":"s","name":"Evenings","scheduleType":"always","timezone":"UTC","ruleIds":[],"enabled":true}],
        "tasks":[],"connections":[{"id":"c","controllerUserId":"g","controlledUserId":"u","role":"controlled",
            "dailyLimitMinutes":60,"flexibilityMode":"permanent","isActive":true}]})";
}

std::string ruleOf(const std::string& category)
{
    return R"(,{"id":")" + category + R"(","category":")" + category +
        R"(","enabled":true,"customDomains":[],"excludedDomains":[],"unblockPolicy":"flexible"})";
}

} // namespace

class Headless : public PrivateWorldTest
{
protected:
    void SetUp() override
    {
        PrivateWorldTest::SetUp();
        m_engine.putSession();
        m_engine.putState(stateWith(ownRules));
        putFile(hostsPath, original);
    }

    static std::string hosts() { return fileBytes(hostsPath); }

    static constexpr auto original = "127.0.0.1 localhost\n192.168.1.5 nas\n";
    HeadlessEngine m_engine;
};

TEST_F(Headless, blocksExactlyWhatTheCachedRulesSay)
{
    const auto log = m_engine.runOnce();
    EXPECT_EQ(hosts(), original + generateHostsEntries({"Example.com", "twitter.com"}))
        << "and SIGTERM leaves the block in place";
    EXPECT_EQ(m_engine.blockedConfig(), R"({"domains":["Example.com","twitter.com"],"categories":["custom"]})");
    EXPECT_THAT(shell("getent hosts cdn.x.com"), HasSubstr("127.0.0.1"));
    EXPECT_THAT(shell("getent hosts nas"), HasSubstr("192.168.1.5"));
    EXPECT_THAT(log, Not(HasSubstr("[HostsFile]")));
}

TEST_F(Headless, secondStartWithTheSameRulesStartsNoProcess)
{
    m_engine.runOnce();
    const auto blocked = hosts();
    shell(
        "printf '#!/bin/sh\\ntouch /mnt/started\\n' >/mnt/bash; chmod +x /mnt/bash; mount --bind /mnt/bash /bin/bash");
    m_engine.start();
    EXPECT_TRUE(m_engine.logs("Bootstrap failed"));
    EXPECT_EQ(m_engine.stop(), 0);
    EXPECT_EQ(hosts(), blocked);
    EXPECT_FALSE(std::filesystem::exists("/mnt/started"));

    m_engine.putState(stateWith(ownRules + ruleOf("news")));
    m_engine.start();
    EXPECT_TRUE(becomes([] { return std::filesystem::exists("/mnt/started"); })) << "a new list is what starts one";
    EXPECT_EQ(m_engine.stop(), 0);
}

TEST_F(Headless, ruleAddedBetweenTwoStartsIsInTheFile)
{
    m_engine.runOnce();
    m_engine.putState(stateWith(ownRules + ruleOf("gambling") + ruleOf("adult") + ruleOf("news")));
    m_engine.runOnce();
    EXPECT_GT(hosts().size(), 128U * 1024) << "more than one argument of a process may hold";
    EXPECT_THAT(shell("getent hosts m.bet365.com"), HasSubstr("127.0.0.1"));
    EXPECT_TRUE(hosts().starts_with(original));
}

TEST_F(Headless, withoutRightsItSaysSoInOneLineAndGoesOn)
{
    const auto log = m_engine.runOnce("nobody");
    EXPECT_EQ(hosts(), original);
    EXPECT_THAT(log, HasSubstr("[HostsFile] Failed to apply blocks\n"));
    EXPECT_EQ(log.find("[HostsFile]"), log.rfind("[HostsFile]"));
    EXPECT_THAT(m_engine.blockedConfig(), HasSubstr("twitter.com"));
}

TEST_F(Headless, logThatNobodyReadsHoldsNothingUp)
{
    shell("HOME=" + m_engine.home().string() + " STILLGATE_API_BASE_URL=" + m_engine.baseURL +
        " timeout 5 " STILLGATE_PROGRAM " --headless 2>&1 | true");
    EXPECT_THAT(hosts(), HasSubstr("twitter.com"));
}

TEST_F(Headless, hangingBackendHoldsUpNeitherTheBlocksNorTheEnd)
{
    QTcpServer silent; // takes connections and never says a word
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    m_engine.baseURL = "https://127.0.0.1:" + std::to_string(silent.serverPort()) + "/v1";
    m_engine.start();
    EXPECT_TRUE(becomes([] { return hosts().contains("twitter.com"); }));
    EXPECT_EQ(m_engine.stop(), 0);
    EXPECT_EQ(hosts(), original + generateHostsEntries({"Example.com", "twitter.com"}));
    EXPECT_TRUE(
        std::filesystem::exists(m_engine.home() / ".local/share/com.stillgate.macos/secure/sg%5Frefresh%5Ftoken"))
        << "a request that never came to its end ends no session";
}

TEST_F(Headless, brokenCacheIsLoggedAndLosesNothing)
{
    m_engine.runOnce();
    const auto blocked = hosts();
    const auto whole = stateWith(ownRules);
    const std::string broken[] = {"", "null", "17", "[]", whole.substr(0, whole.size() / 3), R"({"streak":[]})",
        std::string(50'000'000, '['), shell("head -c 50000000 /dev/urandom")};
    for (const auto& state : broken) {
        m_engine.putState(state);
        const auto log = m_engine.runOnce();
        EXPECT_THAT(log, HasSubstr("[AppState] Cache read failed: CachedState"));
        EXPECT_TRUE(fileBytes(m_engine.stateFile()) == state);
        EXPECT_EQ(hosts(), blocked) << "with no rules, an earlier block stays";
    }
    std::filesystem::remove(m_engine.stateFile());
    std::filesystem::create_directory(m_engine.stateFile());
    EXPECT_THAT(m_engine.runOnce(), Not(HasSubstr("Cache read failed")));
}

TEST_F(Headless, brokenHostsFilesKeepTheUsersLines)
{
    const std::string files[] = {
        "",
        "127.0.0.1 localhost\r\n10.0.0.1 nas\r\n",
        "# caf\xe9\n10.0.0.1 nas",
        "10.0.0.1 nas\n\n# Stillgate Protected Sites\n127.0.0.1 a\n# End Stillgate\n\n"
        "# Stillgate Protected Sites\n127.0.0.1 b\n# End Stillgate\n",
        "# Stillgate Protected Sites\n10.0.0.1 nas\n127.0.0.1 localhost\n",
    };
    for (const auto& file : files) {
        putFile(hostsPath, file);
        putFile(m_engine.home() / ".config/com.stillgate.macos/defaults.json", R"({"sg_onboarding_complete":true})");
        m_engine.runOnce();
        const auto blocked = hosts();
        EXPECT_TRUE(blocked.ends_with(generateHostsEntries({"Example.com", "twitter.com"})));
        EXPECT_EQ(blocked.contains("10.0.0.1 nas"), file.contains("10.0.0.1 nas"));
        EXPECT_EQ(blocked.contains("127.0.0.1 localhost"), file.contains("127.0.0.1 localhost"));
    }
    std::filesystem::remove(hostsPath);
    putFile(m_engine.home() / ".config/com.stillgate.macos/defaults.json", R"({"sg_onboarding_complete":true})");
    m_engine.runOnce();
    EXPECT_EQ(hosts(), generateHostsEntries({"Example.com", "twitter.com"}));
}

TEST_F(Headless, fullDiskCostsNothingThatWasThere)
{
    m_engine.putState(stateWith(ownRules + ruleOf("news")));
    shell("cp -a /etc /mnt/etc; mount -t tmpfs -o size=1m full /etc; cp /mnt/etc/{hosts,passwd,nsswitch.conf} /etc/;"
          "dd if=/dev/zero of=/etc/filler bs=1k count=880");
    const auto log = m_engine.runOnce();
    EXPECT_THAT(log, HasSubstr("[HostsFile] Failed to apply blocks"));
    EXPECT_TRUE(hosts().starts_with(original)) << "the rules' own sites may still have found room behind it";
    EXPECT_EQ(shell("ls /etc"), "filler\nhosts\nnsswitch.conf\npasswd\n");

    shell("rm /etc/filler");
    m_engine.runOnce();
    EXPECT_THAT(hosts(), HasSubstr("bbc.co.uk"));
}

TEST_F(Headless, firstRunAndSignedOutEnforceNothingAndEndCleanly)
{
    std::filesystem::remove_all(m_engine.home() / ".local/share/com.stillgate.macos/secure");
    m_engine.start();
    EXPECT_TRUE(m_engine.logs("Nobody is signed in"));
    EXPECT_EQ(m_engine.stop(), 0);

    std::filesystem::remove_all(m_engine.home() / ".config");
    m_engine.start();
    EXPECT_TRUE(m_engine.logs("Not set up yet"));
    EXPECT_EQ(m_engine.stop(), 0);
    EXPECT_EQ(hosts(), original);
}

} // namespace stillgate
