#include "App/WindowWatch.h"

#include "Platform/Memory/ManualTime.h"
#include "tests/support/FakeShell.h"
#include "tests/support/Matchers.h"

namespace stillgate
{

using namespace test;
using namespace std::chrono_literals;

class Windows : public testing::Test
{
protected:
    Windows()
    {
        m_factory.hasScreen = true;
        m_session.isOnboarding = false;
    }

    void pass() { m_time.advance(500ms); }

    /// Sets the flag, and lets the watch see it.
    void set(QProperty<bool>& flag, bool value)
    {
        flag = value;
        pass();
    }

    void startSignedIn()
    {
        m_session.isAuthenticated = true;
        m_watch.start();
        pass();
    }

    SessionData m_session;
    FakeWindowFactory m_factory;
    ManualTime m_time;
    int m_startedServices = 0;
    ManagedWindows m_windows{m_factory};
    WindowWatch m_watch{m_session, m_windows, m_time, [this] { ++m_startedServices; }};
    const std::vector<std::string>& m_onScreen = m_factory.onScreen;
};

TEST_F(Windows, oneForAnId)
{
    m_windows.open(windowid::auth);
    m_windows.open(windowid::maintenance);
    m_windows.open(windowid::auth);
    EXPECT_THAT(m_onScreen, ElementsAre("maintenance", "auth"));
    EXPECT_THAT(m_factory.made, ElementsAre("auth", "maintenance"));

    m_factory.closeByHand("auth");
    m_windows.open(windowid::auth);
    EXPECT_THAT(m_onScreen, ElementsAre("maintenance", "auth"));
    EXPECT_THAT(m_factory.made, ElementsAre("auth", "maintenance", "auth"));
    m_windows.close(windowid::auth);
    m_windows.close(windowid::auth);
    m_windows.open("settings");
    EXPECT_THAT(m_onScreen, ElementsAre("maintenance"));
}

TEST_F(Windows, thatCannotBeMadeIsTriedAgain)
{
    m_factory.hasScreen = false;
    m_windows.open(windowid::onboarding);
    EXPECT_FALSE(m_windows.bringToFront());
    m_factory.hasScreen = true;
    m_windows.open(windowid::onboarding);
    EXPECT_TRUE(m_windows.bringToFront());
    m_factory.closeByHand("onboarding");
    EXPECT_FALSE(m_windows.bringToFront());
    EXPECT_THAT(m_onScreen, IsEmpty()) << "what the user has closed doesn't come back";
}

TEST_F(Windows, maintenanceStandsOverASessionAndItsEnd)
{
    startSignedIn();
    set(m_session.isMaintenanceMode, true);
    EXPECT_THAT(m_onScreen, ElementsAre("maintenance"));
    set(m_session.isMaintenanceMode, false);
    EXPECT_THAT(m_onScreen, IsEmpty());
    EXPECT_EQ(m_startedServices, 1) << "they went on meanwhile";

    set(m_session.isMaintenanceMode, true);
    set(m_session.isAuthenticated, false);
    EXPECT_THAT(m_onScreen, ElementsAre("maintenance"));
    set(m_session.isMaintenanceMode, false);
    EXPECT_THAT(m_onScreen, ElementsAre("auth"));
    set(m_session.isAuthenticated, true);
    EXPECT_THAT(m_onScreen, IsEmpty());
    EXPECT_EQ(m_startedServices, 2);
}

TEST_F(Windows, gatesTakeThePlaceOfTheSignIn)
{
    m_windows.open(windowid::auth);
    m_watch.start();
    set(m_session.isMaintenanceMode, true);
    EXPECT_THAT(m_onScreen, ElementsAre("maintenance"));
    set(m_session.requiresForceUpdate, true);
    EXPECT_THAT(m_onScreen, ElementsAre("maintenance", "force-update"));
    set(m_session.isMaintenanceMode, false);
    EXPECT_THAT(m_onScreen, ElementsAre("force-update", "auth"));
}

TEST_F(Windows, forcedUpdateIsNeverTakenBack)
{
    m_watch.start();
    set(m_session.requiresForceUpdate, true);
    set(m_session.isAuthenticated, true);
    EXPECT_EQ(m_startedServices, 0);
    set(m_session.requiresForceUpdate, false);
    EXPECT_THAT(m_onScreen, ElementsAre("force-update"));
    EXPECT_EQ(m_startedServices, 1) << "the session goes on behind it";

    m_factory.closeByHand("force-update");
    pass();
    EXPECT_THAT(m_onScreen, IsEmpty());
    set(m_session.requiresForceUpdate, true);
    EXPECT_THAT(m_onScreen, IsEmpty());
}

TEST_F(Windows, gatesOfTheStartCountAsSeenAndASessionDoesNot)
{
    m_session.isMaintenanceMode = true;
    m_session.requiresForceUpdate = true;
    startSignedIn();
    EXPECT_THAT(m_onScreen, IsEmpty());
    m_session.isMaintenanceMode = false;
    set(m_session.requiresForceUpdate, false);
    EXPECT_EQ(m_startedServices, 1);
}

} // namespace stillgate
