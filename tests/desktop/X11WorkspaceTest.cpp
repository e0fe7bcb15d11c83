#include "tests/desktop/X11Fixture.h"

#include <QDeadlineTimer>

namespace stillgate
{

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(X11, realAppsAreToldByTheirIdentifiers)
{
    Program terminal{{"xterm"}};
    EXPECT_TRUE(comesToFront("com.apple.Terminal"));
    EXPECT_EQ(m_workspace->frontmostApplication()->processIdentifier(), terminal.pid());
    Program editor{{"mousepad", "--disable-server"}};
    EXPECT_TRUE(comesToFront("org.xfce.mousepad"));
    EXPECT_EQ(m_workspace->frontmostApplication()->processIdentifier(), editor.pid());
    editor.end();
    EXPECT_TRUE(comesToFront("com.apple.Terminal"));
    terminal.end();
    EXPECT_TRUE(comesToFront("nothing"));
    EXPECT_THAT(m_launched, ElementsAre("com.apple.Terminal", "org.xfce.mousepad"));
    EXPECT_THAT(m_log.lines, IsEmpty());
}

TEST_F(X11, onlyAChangeOfAppIsAnActivation)
{
    const X11TestWindow alpha{"Alpha-Window"};
    const X11TestWindow secondAlpha{"Alpha-Window"};
    const X11TestWindow beta{"Beta"};
    EXPECT_TRUE(isShown(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    EXPECT_TRUE(isShown(secondAlpha));
    EXPECT_TRUE(isShown(beta));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(isActivated(alpha));
        EXPECT_TRUE(comesToFront("org.example.Alpha"));
        EXPECT_TRUE(isActivated(secondAlpha));
        EXPECT_TRUE(isActivated(beta));
        EXPECT_TRUE(comesToFront("org.example.Beta"));
    }
    const Names expected{"org.example.Alpha", "org.example.Beta"};
    EXPECT_THAT(m_launched, expected);
    EXPECT_THAT(m_activated,
        ElementsAre(
            expected[0], expected[1], expected[0], expected[1], expected[0], expected[1], expected[0], expected[1]));
}

TEST_F(X11, iconIsNotInFront)
{
    const X11TestWindow alpha{"Alpha-Window"};
    EXPECT_TRUE(isShown(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    alpha.makeIcon();
    EXPECT_TRUE(comesToFront("nothing"));
    claim("_NET_ACTIVE_WINDOW", {alpha.number()}); // as window managers do that repeat themselves
    const X11TestWindow beta{"Beta"};
    EXPECT_TRUE(isShown(beta));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    beta.makeIcon();
    EXPECT_TRUE(comesToFront("nothing"));
    EXPECT_TRUE(isActivated(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    EXPECT_THAT(
        m_activated, ElementsAre("org.example.Alpha", "nothing", "org.example.Beta", "nothing", "org.example.Alpha"));
    EXPECT_THAT(m_launched, ElementsAre("org.example.Alpha", "org.example.Beta"));
}

TEST_F(X11, momentBetweenTwoWindowsIsNoActivation)
{
    const X11TestWindow alpha{"Alpha-Window"};
    EXPECT_TRUE(isShown(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    claim("_NET_ACTIVE_WINDOW", {XCB_WINDOW_NONE});
    EXPECT_TRUE(becomes([&] { return m_time.pendingTimers() == 1; }));
    EXPECT_EQ(front(), "org.example.Alpha");
    claim("_NET_ACTIVE_WINDOW", {alpha.number()});
    EXPECT_TRUE(becomes([&] { return m_time.pendingTimers() == 0; }));

    claim("_NET_ACTIVE_WINDOW", {XCB_WINDOW_NONE});
    EXPECT_TRUE(becomes([&] { return m_time.pendingTimers() == 1; }));
    claim("_NET_ACTIVE_WINDOW", {alpha.number()});
    m_time.advance(std::chrono::seconds{1});
    EXPECT_THAT(m_activated, ElementsAre("org.example.Alpha")) << "the answer was on its way";

    claim("_NET_ACTIVE_WINDOW", {XCB_WINDOW_NONE});
    EXPECT_TRUE(becomes([&] { return m_time.pendingTimers() == 1; }));
    m_time.advance(std::chrono::seconds{1});
    EXPECT_THAT(m_activated, ElementsAre("org.example.Alpha", "nothing"));
}

TEST_F(X11, appThatIsClosedEnds)
{
    const X11TestWindow beta{"Beta"};
    EXPECT_TRUE(isShown(beta));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    const auto first = m_workspace->frontmostApplication();
    beta.close();
    EXPECT_TRUE(comesToFront("nothing"));

    const X11TestWindow again{"Beta"};
    EXPECT_TRUE(isShown(again));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    EXPECT_NE(m_workspace->frontmostApplication(), first);
    EXPECT_THAT(m_launched, ElementsAre("org.example.Beta", "org.example.Beta"));
}

TEST_F(X11, numberOfAWindowMayComeAgain)
{
    const X11TestWindow window{"Alpha-Window"};
    EXPECT_TRUE(isShown(window));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    window.giveNumberToNewWindow("Beta");
    const QDeadlineTimer limit{std::chrono::seconds{10}};
    while (!window.isActive() && !limit.hasExpired()) // and the workspace gets no turn meanwhile
        ;
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    window.giveNumberToNewWindow("ALPHA-window");
    EXPECT_TRUE(comesToFront("org.example.Alpha")) << "its properties are watched";
}

TEST_F(X11, pidIsTheOneThatTheServerKnows)
{
    const X11TestWindow alpha{"Alpha-Window"}; // says that it is 1
    EXPECT_TRUE(isShown(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    EXPECT_EQ(m_workspace->frontmostApplication()->processIdentifier(), ::getpid());
}

TEST_F(X11, windowMayTellLateWhoseItIs)
{
    const X11TestWindow window;
    EXPECT_TRUE(isShown(window));
    EXPECT_TRUE(comesToFront("unknown"));
    window.putClass("Beta");
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    window.putApplicationId("org.example.Alpha");
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    EXPECT_THAT(m_activated, ElementsAre("unknown", "org.example.Beta", "org.example.Alpha"));
    EXPECT_EQ(m_launched, m_activated);
}

TEST_F(X11, appsThatRanBeforeWeStartedAreNotLaunched)
{
    const X11TestWindow alpha{"Alpha-Window"};
    EXPECT_TRUE(isShown(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    m_launched.clear();
    m_workspace = newWorkspace();
    observe();
    EXPECT_EQ(front(), "org.example.Alpha") << "known at once";
    const X11TestWindow beta{"Beta"};
    EXPECT_TRUE(isShown(beta));
    EXPECT_TRUE(becomes([&] { return !m_launched.empty(); }));
    EXPECT_THAT(m_launched, ElementsAre("org.example.Beta"));
}

TEST_F(X11, regularAppsAreToldInTheOrderOfTheirWindows)
{
    const X11TestWindow beta{"Beta"};
    const X11TestWindow alpha{"Alpha-Window"};
    const X11TestWindow unknown{"Unknown"};
    const X11TestWindow panel{"org.xfce.mousepad"};
    panel.putType("_NET_WM_WINDOW_TYPE_DOCK");
    const X11TestWindow secondBeta{"Beta"};
    for (const auto* window : {&beta, &alpha, &unknown, &secondBeta})
        EXPECT_TRUE(isShown(*window));
    alpha.makeIcon();
    panel.show();
    EXPECT_TRUE(becomes([&] { return m_launched.size() == 4; }));
    EXPECT_THAT(m_workspace->runningApplications(),
        ElementsAre(ApplicationDescription{"org.example.Beta", "org.example.Beta by name", "beta"},
            ApplicationDescription{"org.example.Alpha", "org.example.Alpha by name", ""}));
}

TEST_F(X11, nonsenseIsSurvived)
{
    claim("_NET_CLIENT_LIST", {0, 1, m_root->root(), 0xffffffff, 0x1234567});
    for (const uint32_t window : {1U, m_root->root(), 0xffffffffU, 0U})
        claim("_NET_ACTIVE_WINDOW", {window});
    claim("_NET_ACTIVE_WINDOW", {});
    const X11TestWindow window{"Beta"};
    window.putApplicationId(std::string(1'000'000, '/'));
    EXPECT_TRUE(isShown(window));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
}

/// A server that a test may end, with the window managers that it starts.
class LoneX11 : public X11
{
protected:
    void SetUp() override
    {
        ::qputenv("DISPLAY", QByteArray{":"} + m_server.line().c_str());
        m_root = X11Connection::open();
        X11::SetUp();
    }

    Program m_server{{"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset"}};
};

TEST_F(LoneX11, windowManagerMayComeLater)
{
    const X11TestWindow alpha{"Alpha-Window"};
    alpha.show();
    EXPECT_EQ(front(), "nothing");
    const auto windowManager = newWindowManager();
    EXPECT_TRUE(isActivated(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    EXPECT_THAT(m_launched, ElementsAre("org.example.Alpha"));
}

TEST_F(LoneX11, anotherWindowManagerStartsNoAppAnew)
{
    const auto first = newWindowManager();
    const X11TestWindow alpha{"Alpha-Window"};
    const X11TestWindow beta{"Beta"};
    EXPECT_TRUE(isShown(alpha));
    EXPECT_TRUE(isShown(beta));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    const auto successor = newWindowManager();
    EXPECT_TRUE(isActivated(alpha));
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    EXPECT_TRUE(isActivated(beta));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    EXPECT_THAT(m_launched, ElementsAre("org.example.Alpha", "org.example.Beta"));
}

TEST_F(LoneX11, lostServerLeavesNothingInFront)
{
    const X11TestWindow alpha{"Alpha-Window"};
    claim("_NET_ACTIVE_WINDOW", {alpha.number()});
    EXPECT_TRUE(comesToFront("org.example.Alpha"));
    m_server.end();
    EXPECT_TRUE(comesToFront("nothing"));
    EXPECT_THAT(m_activated, ElementsAre("org.example.Alpha", "nothing"));
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("The connection to the X server is lost")));
    EXPECT_EQ(X11Connection::open(), nullptr);
    EXPECT_EQ(m_workspace->nameOfApplication("com.apple.Terminal"), "debian-xterm by name");
}

} // namespace stillgate
