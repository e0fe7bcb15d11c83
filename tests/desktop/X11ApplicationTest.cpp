#include "tests/desktop/X11Fixture.h"

#include <QDeadlineTimer>

namespace stillgate
{

using namespace test;
using testing::ElementsAre;

/// Apps that are told to go.
class X11Apps : public X11
{
protected:
    [[nodiscard]] std::shared_ptr<RunningApplication> frontApp(const std::string& name)
    {
        return comesToFront(name) ? m_workspace->frontmostApplication() : nullptr;
    }

    static void type(const QString& text) { QProcess::execute("xdotool", {"type", "--delay", "1", text}); }
};

TEST_F(X11Apps, hiddenAppIsGoneFromTheFrontWithAllItsWindows)
{
    const X11TestWindow alpha{"Alpha-Window"};
    const X11TestWindow secondAlpha{"Alpha-Window"};
    EXPECT_TRUE(isShown(alpha));
    EXPECT_TRUE(isShown(secondAlpha));
    const auto app = frontApp("org.example.Alpha");
    ASSERT_TRUE(app);
    EXPECT_EQ(app->localizedName(), "org.example.Alpha by name");
    EXPECT_FALSE(app->isHidden());
    app->hide();
    EXPECT_TRUE(becomes([&] { return app->isHidden(); }));
    EXPECT_TRUE(comesToFront("nothing"));
    const X11TestWindow late{"Alpha-Window"};
    const QDeadlineTimer aWhile{500};
    (void)becomes([&] { return aWhile.hasExpired(); });
    EXPECT_TRUE(app->isHidden() && !late.isViewable()) << "a window that was on its way";
    EXPECT_FALSE(app->isTerminated());
    m_activated.clear();

    // What X11 says twice, and late.
    for (const auto* window : {&alpha, &secondAlpha})
        claim("_NET_ACTIVE_WINDOW", {window->number()});
    const X11TestWindow beta{"Beta"};
    EXPECT_TRUE(isShown(beta));
    EXPECT_TRUE(comesToFront("org.example.Beta"));
    EXPECT_THAT(m_activated, ElementsAre("org.example.Beta")) << "a hidden app isn't activated";

    EXPECT_TRUE(isActivated(alpha));
    EXPECT_EQ(frontApp("org.example.Alpha"), app);
    EXPECT_FALSE(app->isHidden());
}

TEST_F(X11Apps, politeAppQuits)
{
    Program terminal{{"xterm"}};
    const auto app = frontApp("com.apple.Terminal");
    ASSERT_TRUE(app);
    EXPECT_TRUE(app->executablePath().ends_with("/xterm")) << app->executablePath();
    EXPECT_TRUE(app->frame());
    EXPECT_GT(app->frame()->width, 100);
    app->terminate();
    EXPECT_TRUE(becomes([&] { return app->isTerminated(); }));
    EXPECT_TRUE(terminal.hasEnded());
    app->terminate();
    app->forceTerminate();
    app->hide();
}

TEST_F(X11Apps, appThatAsksInsteadOfQuittingIsEnded)
{
    Program editor{{"mousepad", "--disable-server"}};
    const auto app = frontApp("org.xfce.mousepad");
    ASSERT_TRUE(app);
    type("work");
    EXPECT_TRUE(becomes([&] { return app->frontWindowTitle().value_or("").starts_with('*'); })) << "it isn't saved";
    app->terminate();
    EXPECT_FALSE(editor.hasEnded(std::chrono::milliseconds{500}));
    EXPECT_FALSE(app->isTerminated());
    app->forceTerminate();
    EXPECT_TRUE(becomes([&] { return app->isTerminated(); }));
    EXPECT_TRUE(editor.hasEnded());
}

/// A window that we own ourselves, as one of another user or machine would be: its process is nothing to be ended.
TEST_F(X11Apps, appThatGoesOnWithoutAWindowHasNotEnded)
{
    Program editor{{"mousepad", "--disable-server"}};
    const auto app = frontApp("org.xfce.mousepad");
    ASSERT_TRUE(app);
    // What an app does that goes into the status area; one that still opens its window comes back once.
    EXPECT_TRUE(becomes([&] {
        shell("xdotool windowunmap $(xdotool getactivewindow)");
        return front() == "nothing";
    }));
    EXPECT_FALSE(app->isTerminated());
    app->forceTerminate();
    EXPECT_TRUE(becomes([&] { return app->isTerminated(); }));
    EXPECT_TRUE(editor.hasEnded());
}

TEST_F(X11Apps, whatCannotBeEndedLosesItsWindows)
{
    const X11TestWindow alpha{"Alpha-Window"};
    EXPECT_TRUE(isShown(alpha));
    const auto app = frontApp("org.example.Alpha");
    ASSERT_TRUE(app);
    app->forceTerminate();
    EXPECT_TRUE(becomes([&] { return app->isTerminated(); }));
}

} // namespace stillgate
