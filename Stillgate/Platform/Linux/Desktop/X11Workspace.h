#pragma once

#include "Platform/Linux/Desktop/DesktopEntries.h"
#include "Platform/Linux/Desktop/X11Application.h"
#include "Platform/Linux/Desktop/X11WindowQuery.h"
#include "Platform/Log.h"
#include "Platform/Scheduler.h"
#include "Platform/Workspace.h"

#include <QSocketNotifier>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace stillgate
{

/// A desktop whose window manager tells by EWMH which windows there are and which one is active: every common one.
///
/// It may come later, go and start anew. When the X server goes, nothing is in front any more, for good.
class X11Workspace final : public Workspace
{
public:
    /// `requests` is what apps are asked and told through: whoever waits for an answer takes events out of a
    /// connection.
    X11Workspace(std::unique_ptr<X11Connection> events, std::shared_ptr<X11Connection> requests,
        DesktopEntries& entries, Scheduler& scheduler, Log& log);

    [[nodiscard]] std::shared_ptr<RunningApplication> frontmostApplication() const override { return m_front; }

    [[nodiscard]] std::unique_ptr<Observation> onActivation(ApplicationObserver observer) override;
    [[nodiscard]] std::unique_ptr<Observation> onLaunch(ApplicationObserver observer) override;
    [[nodiscard]] std::optional<std::string> nameOfApplication(std::string_view bundleIdentifier) const override;
    [[nodiscard]] std::vector<ApplicationDescription> installedApplications() const override;
    [[nodiscard]] std::vector<ApplicationDescription> runningApplications() const override;
    void open(const std::string& url) override;

private:
    using Application = std::shared_ptr<X11Application>;
    using ApplicationKey = std::pair<std::optional<std::string>, int>; ///< the identifier; without one, the pid

    void takeEvents();
    void noteEvent(const xcb_generic_event_t& event);
    void noteChange(const xcb_property_notify_event_t& change);

    [[nodiscard]] bool isOutdated() const { return m_desktopIsOutdated || !m_outdatedWindows.empty(); }

    void update();
    void updateDesktop();
    void updateWindows();
    void updateWindow(xcb_window_t window, const std::optional<X11WindowFacts>& facts);
    void removeWindow(xcb_window_t window);
    void forgetEndedApplications();
    [[nodiscard]] Application runningApplication(const X11WindowFacts& facts);
    void tellLaunches();
    void updateFront();
    void declareNothingInFront();
    void setFront(Application application);
    void loseConnection();

    std::unique_ptr<X11Connection> m_connection;
    std::shared_ptr<X11Connection> m_requests;
    DesktopEntries& m_entries;
    Scheduler& m_scheduler;
    Log& m_log;
    QSocketNotifier m_readable;

    bool m_desktopIsOutdated = true; ///< the list of windows, or which one is active
    std::set<xcb_window_t> m_outdatedWindows;
    std::set<xcb_window_t> m_listed;   ///< those that the window manager tells of
    std::vector<xcb_window_t> m_order; ///< in which it does: the oldest first
    std::set<xcb_window_t> m_managed;  ///< that a window manager has or had
    xcb_window_t m_active = XCB_WINDOW_NONE;
    std::map<xcb_window_t, Application> m_windows;
    std::map<ApplicationKey, Application> m_running;
    std::vector<Application> m_launched; ///< not yet told
    Application m_front;
    std::unique_ptr<Timer> m_nothingInFront;

    Observers<std::shared_ptr<RunningApplication>> m_activation;
    Observers<std::shared_ptr<RunningApplication>> m_launch;
};

} // namespace stillgate
