#include "Platform/Linux/Desktop/X11WindowStacking.h"

#include "Platform/Linux/LinuxScheduler.h"
#include "tests/desktop/X11Fixture.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>

namespace stillgate
{

using namespace test;

/// A window that nobody manages, kept in front of others.
class X11Stacking : public X11
{
protected:
    void SetUp() override
    {
        X11::SetUp();
        m_own.leaveUnmanaged();
        m_own.show();
        EXPECT_TRUE(becomes([&] { return m_own.isViewable(); }));
        m_kept = m_stacking.keepInFront(m_own.number(), [this] { m_isLost = true; });
        expectInFront("at the start");
        m_own.hide();
        expectInFront("being taken off the screen");
    }

    /// Within 200 ms, and a little for a machine that has other work.
    void expectInFront(const char* afterWhat)
    {
        QElapsedTimer time;
        time.start();
        EXPECT_TRUE(becomes([&] { return m_own.isOnTop() && m_own.hasKeyboard(); })) << afterWhat;
        EXPECT_LT(time.elapsed(), 1000) << afterWhat;
    }

    LinuxScheduler m_scheduler;
    X11WindowStacking m_stacking{m_scheduler};
    X11TestWindow m_own;
    std::unique_ptr<Observation> m_kept;
    bool m_isLost = false;
};

TEST_F(X11Stacking, nothingStaysAboveIt)
{
    const X11TestWindow other{"Alpha-Window"};
    EXPECT_TRUE(isShown(other));
    expectInFront("a new window");
    EXPECT_TRUE(isActivated(other));
    expectInFront("an activation");
    other.fillScreen();
    EXPECT_TRUE(isActivated(other));
    expectInFront("a window that fills the screen");

    const X11TestWindow unmanaged;
    unmanaged.leaveUnmanaged();
    unmanaged.show();
    expectInFront("a window that nobody manages either");
    unmanaged.raise();
    unmanaged.takeKeyboard();
    expectInFront("one that comes up again");
    EXPECT_FALSE(m_isLost);
}

TEST_F(X11Stacking, keyboardGoesBackToTheActiveWindow)
{
    const X11TestWindow other{"Alpha-Window"};
    EXPECT_TRUE(isShown(other));
    expectInFront("a new window");
    m_own.hide();
    m_kept.reset();
    EXPECT_TRUE(becomes([&] { return other.hasKeyboard(); }));
    m_own.show();
    EXPECT_TRUE(isActivated(other));
    EXPECT_FALSE(m_own.hasKeyboard()) << "it isn't kept any more";
}

TEST_F(X11Stacking, screenThatIsLockedStaysLocked)
{
    const X11TestWindow lock;
    lock.leaveUnmanaged();
    lock.cover();
    lock.show();
    EXPECT_TRUE(becomes([&] { return lock.isViewable(); }));
    expectInFront("a window that covers the screen without holding the keyboard");
    EXPECT_TRUE(lock.holdKeyboard());
    lock.raise();
    const QDeadlineTimer aWhile{300};
    (void)becomes([&] { return aWhile.hasExpired(); });
    EXPECT_TRUE(lock.isOnTop());
    lock.close();
    expectInFront("the screen is unlocked");
}

TEST_F(X11Stacking, windowThatSomebodyDestroysIsTold)
{
    xcb_destroy_window(m_root->xcb(), m_own.number());
    m_root->flush();
    EXPECT_TRUE(becomes([&] { return m_isLost; }));
}

TEST_F(X11Stacking, compositorIsToldByItsSelection)
{
    EXPECT_FALSE(m_stacking.isComposited());
    m_own.own("_NET_WM_CM_S0");
    EXPECT_TRUE(m_stacking.isComposited());
}

} // namespace stillgate
