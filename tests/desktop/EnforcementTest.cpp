#include "Blocking/HostsEntries.h"
#include "tests/desktop/PrivateWorld.h"
#include "tests/desktop/SignedInProgram.h"

#include <QElapsedTimer>
#include <gmock/gmock.h>

namespace stillgate::test
{

using testing::HasSubstr;

/// The whole program with real apps and a real backend, in an /etc of its own.
class Enforcement : public PrivateWorldTest, protected SignedInProgram
{
protected:
    void SetUp() override
    {
        PrivateWorldTest::SetUp();
        if (!begin())
            GTEST_SKIP() << "built for a backend whose keys aren't here";
    }

    TemporaryFolder m_folder;
};

TEST_F(Enforcement, flexibleBlockHidesTheAppAndKeepsTheWork)
{
    makeRule({terminal}, {});
    start();
    ApplicationProcess app{home, {}, "xterm"};
    ASSERT_TRUE(blockScreenComes());
    const auto window = windowOf(app);
    EXPECT_TRUE(becomes([&] { return isHidden(window); }));

    const auto screen = windowTitled("Stillgate");
    for (const auto& attack :
        std::vector<std::string>{"key alt+F4", "key super+d", "windowquit " + screen, "windowunmap " + screen}) {
        shell("xdotool " + attack);
        // Whatever it does, it has done by the time that an app of afterwards has its window.
        const ApplicationProcess later{home, {"--disable-server"}, "mousepad"};
        EXPECT_TRUE(becomes([&] { return !windowOf(later).empty(); }));
        EXPECT_TRUE(becomes([&] { return windowTitled("Stillgate") == screen; })) << attack;
    }
    press("Escape");
    EXPECT_TRUE(blockScreenGoes());
    EXPECT_TRUE(app.isRunning());
    EXPECT_TRUE(isHidden(window));

    for (int i = 0; i < 3; ++i) {
        shell("xdotool windowactivate " + window);
        EXPECT_TRUE(blockScreenComes()) << "it is still forbidden";
        press("Return");
        EXPECT_TRUE(blockScreenGoes());
    }
    EXPECT_TRUE(app.isRunning());
    EXPECT_EQ(program().terminate(), 0);
}

TEST_F(Enforcement, strictBlockEndsAnAppThatDoesNotObey)
{
    ApplicationProcess app{home, {"--disable-server"}, "mousepad"};
    ASSERT_TRUE(becomes([&] { return !windowOf(app).empty(); }));
    EXPECT_TRUE(becomes([&] {
        shell("xdotool windowactivate " + windowOf(app) + " type work");
        return windowTitled("[*].*Mousepad") == windowOf(app);
    })) << "there is something that isn't saved";
    makeRule({editor}, {}, "permanent");
    start();
    EXPECT_TRUE(blockScreenComes()) << "it was in front at the start";
    EXPECT_TRUE(becomes([&] { return !app.isRunning(); }));
    press("Escape");
    EXPECT_TRUE(blockScreenGoes());

    ApplicationProcess again{home, {"--disable-server"}, "mousepad"};
    EXPECT_TRUE(blockScreenComes());
    EXPECT_TRUE(becomes([&] { return !again.isRunning(); }));
    EXPECT_EQ(program().terminate(), 0);
    EXPECT_TRUE(blockScreenGoes());
}

TEST_F(Enforcement, blockedSiteIsRefusedAndBringsUpTheScreen)
{
    makeRule({}, {"video.example"});
    start();
    EXPECT_TRUE(becomes([] { return fileBytes("/etc/hosts").contains("127.0.0.1 www.video.example\n"); }));
    EXPECT_THAT(shell("getent ahostsv4 m.video.example"), HasSubstr("127.0.0.1"));
    ApplicationProcess browser{
        home, chromiumOptions(m_folder.path() / "profile", "http://www.video.example/watch"), "chromium"};
    EXPECT_TRUE(blockScreenComes());
    press("Escape");
    EXPECT_TRUE(blockScreenGoes());
    EXPECT_TRUE(blockScreenComes()) << "the tab stays, and so does the block";
    EXPECT_TRUE(browser.isRunning());
    press("Escape");
    EXPECT_TRUE(blockScreenGoes());
    press("ctrl+w");
    EXPECT_EQ(program().terminate(), 0);
}

/// Deletes of lines, of the whole file, of its block: by a program that is no friend.
TEST_F(Enforcement, damagedBlockIsBackWithinASecond)
{
    makeRule({}, {"video.example"});
    start();
    const auto intact = [] {
        return becomes(
            [] { return fileBytes("/etc/hosts").ends_with("127.0.0.1 www.video.example\n# End Stillgate\n"); });
    };
    EXPECT_TRUE(intact());
    const auto block = generateHostsEntries({"video.example"});
    for (const auto* damage : {"sed -i /video/d /etc/hosts", "rm /etc/hosts", ": >/etc/hosts",
             "sed -i 's/127.0.0.1 video/10.0.0.1 video/' /etc/hosts"}) {
        shell(damage);
        EXPECT_FALSE(fileBytes("/etc/hosts").contains(block)) << damage;
        QElapsedTimer time;
        time.start();
        EXPECT_TRUE(becomes([&] { return fileBytes("/etc/hosts").contains(block); })) << damage;
        EXPECT_LT(time.elapsed(), 3000) << damage; // within a second, where nothing else runs
    }
    shell("echo 10.0.0.1 mine >>/etc/hosts");
    EXPECT_THAT(fileBytes("/etc/hosts"), HasSubstr("10.0.0.1 mine\n"));
}

} // namespace stillgate::test
