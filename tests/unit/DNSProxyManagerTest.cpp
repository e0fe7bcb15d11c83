#include "Blocking/DNSProxyManager.h"

#include "Platform/Memory/MemoryLog.h"
#include "Platform/Memory/MemorySystemExtensions.h"
#include "tests/support/Await.h"
#include "tests/support/Matchers.h"

namespace stillgate
{

using namespace test;

class DNSProxySetup : public testing::Test
{
protected:
    void expectState(bool active, bool installed, const std::string& error)
    {
        EXPECT_EQ(m_manager.isActive, active);
        EXPECT_EQ(m_manager.extensionInstalled, installed);
        EXPECT_EQ(m_manager.setupError.value().has_value(), !error.empty());
        EXPECT_THAT(m_manager.setupError.value().value_or(""), HasSubstr(error));
    }

    void allow()
    {
        m_system.verdict = true;
        m_system.isPermitted = true;
    }

    MemorySystemExtensions m_system;
    MemoryLog m_log;
    DNSProxyManager m_manager{m_system, m_system, m_log};
};

TEST_F(DNSProxySetup, goesThroughActivationOnce)
{
    allow();
    EXPECT_TRUE(await(m_manager.fullSetup()));
    expectState(true, true, "");
    EXPECT_TRUE(await(m_manager.fullSetup()));
    EXPECT_EQ(m_system.activations, 1);
    EXPECT_THAT(m_log.lines,
        ElementsAre("[DNSProxy] System extension installed successfully", "[DNSProxy] Proxy enabled successfully",
            "[DNSProxy] Proxy enabled successfully"));

    EXPECT_TRUE(await(m_manager.disable()));
    EXPECT_FALSE(m_manager.isActive);
    EXPECT_FALSE(m_system.setting.isEnabled);
}

TEST_F(DNSProxySetup, refusalIsAnErrorForTheUser)
{
    EXPECT_FALSE(await(m_manager.fullSetup()));
    expectState(false, false, "was not approved");
    m_system.verdict = false; // a restart is needed
    EXPECT_FALSE(await(m_manager.fullSetup()));
    expectState(false, false, "was not approved");
    m_system.verdict = true;
    EXPECT_FALSE(await(m_manager.fullSetup()));
    expectState(false, true, "save the setting");
    EXPECT_THAT(m_log.lines, Contains(HasSubstr("[DNSProxy] Setup failed: save the setting")));
    EXPECT_FALSE(await(m_manager.disable()));
    m_system.isPermitted = true;
    EXPECT_TRUE(await(m_manager.fullSetup()));
    expectState(true, true, "");
}

TEST_F(DNSProxySetup, waitsForTheUserAndLeavesNobodyWaiting)
{
    allow();
    m_system.approval = std::make_shared<OneShotEvent>();
    Awaited first{m_manager.fullSetup()};
    Awaited second{m_manager.fullSetup()};
    EXPECT_FALSE(first.hasEnded() || second.hasEnded());
    EXPECT_THAT(m_log.lines, Contains(HasSubstr("Waiting for user approval")));
    m_system.approval->happen();
    EXPECT_TRUE(first.result() && second.result());
    EXPECT_TRUE(m_manager.isActive);
}

TEST_F(DNSProxySetup, proxyThatIsOnFollowsThePermanence)
{
    allow();
    m_manager.setPermanence(Permanence::permanent);
    EXPECT_EQ(m_system.permanence, Permanence::flexible) << "it isn't on yet";
    EXPECT_TRUE(await(m_manager.fullSetup()));
    EXPECT_EQ(m_system.permanence, Permanence::permanent);
    m_manager.setPermanence(Permanence::flexible);
    EXPECT_EQ(m_system.permanence, Permanence::flexible);
}

TEST_F(DNSProxySetup, statusIsWhatTheSystemSays)
{
    m_system.setting = {.isEnabled = false, .hasProvider = true};
    m_manager.isActive = true; // and switched off since, in the system's settings
    m_manager.checkStatus();
    expectState(false, true, "");
}

} // namespace stillgate
