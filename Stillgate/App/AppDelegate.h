#pragma once

#include "App/AppState.h"
#include "App/ManagedWindows.h"
#include "App/ServiceRunner.h"
#include "App/WindowWatch.h"
#include "Platform/StatusItem.h"

namespace stillgate
{

/// What the shell works with beside the session. All of it outlives the event loop.
struct ShellServices
{
    ServiceRunner& services;
    NotificationCenter& notifications;
    Scheduler& scheduler;
    StatusItem& statusItem;
    WindowFactory& windowFactory;
    std::function<void()> quit; ///< ends the event loop
};

/// What the desktop talks to: the start of the application and its end, its status item, shortcuts and windows.
class AppDelegate
{
public:
    AppDelegate(AppState& state, const ShellServices& shell);

    void applicationDidFinishLaunching();

    /// Reports what has to be reported, stops what runs, and ends the event loop. The blocks stay. A second call does
    /// nothing.
    void terminate();

    /// A key with the command modifier; true if it was a shortcut (`shortcutFor`).
    bool handleCommandKey(std::string_view characters);

    /// The user has started the application again: what there is to see comes to the front.
    void applicationReopened();

    void togglePopover();
    void openSettingsToTab(int tag);

private:
    [[nodiscard]] Task<> launch();
    void setUpMenuBar();
    [[nodiscard]] Task<> end();

    AppState& m_state;
    ShellServices m_shell;
    ManagedWindows m_windows;
    WindowWatch m_watch;
    std::unique_ptr<Popover> m_popover;
    bool m_hasLaunched = false; ///< the session has come up, or it is known why not
    bool m_isTerminating = false;
    std::unique_ptr<Observation> m_statusItemClick;
    std::unique_ptr<Observation> m_openAuthWindow;
};

} // namespace stillgate
