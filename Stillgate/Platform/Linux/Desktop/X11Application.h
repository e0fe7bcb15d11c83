#pragma once

#include "Platform/Linux/Desktop/X11Connection.h"
#include "Platform/Linux/FileDescriptor.h"
#include "Platform/Workspace.h"

#include <chrono>
#include <map>
#include <set>

namespace stillgate
{

/// An app with windows on an X11 desktop. It has ended when its windows and its processes are gone; one that takes its
/// windows away and goes on, in the status area for example, has not.
class X11Application final : public RunningApplication
{
public:
    struct Window
    {
        int processIdentifier = 0;
        bool isIconic = false;
        bool isFurniture = false; ///< as in `X11WindowFacts`
    };

    X11Application(std::shared_ptr<X11Connection> connection, std::optional<std::string> identifier,
        std::optional<std::string> name)
        : m_connection(std::move(connection))
        , m_identifier(std::move(identifier))
        , m_name(std::move(name))
    {}

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return m_identifier; }

    /// An app may have several; then it is that of the window that was in front last.
    [[nodiscard]] int processIdentifier() const override { return m_processIdentifier; }

    [[nodiscard]] std::optional<std::string> localizedName() const override { return m_name; }

    [[nodiscard]] std::string executablePath() const override;

    [[nodiscard]] bool isHidden() const override { return hasWindows() && !isVisible(); }

    void hide() override;
    void terminate() override;

    /// Whoever can't be ended as a process (another user's, one on another machine) loses its connection to the
    /// desktop.
    void forceTerminate() override;

    [[nodiscard]] bool isTerminated() const override;

    [[nodiscard]] std::optional<std::string> frontWindowTitle() const override;
    [[nodiscard]] std::optional<ScreenRectangle> frame() const override;

    void putWindow(xcb_window_t number, Window window);
    void removeWindow(xcb_window_t number);
    void windowIsInFront(xcb_window_t number);

    [[nodiscard]] bool hasWindows() const { return !m_windows.empty(); }

    /// Whether any of its windows is more than an icon.
    [[nodiscard]] bool isVisible() const;

    /// Whether the user would say that it runs: a panel or the background of the desktop is just there.
    [[nodiscard]] bool isRegular() const;

private:
    void hide(xcb_window_t window);
    void watchProcess(xcb_window_t window, int process);

    std::shared_ptr<X11Connection> m_connection;
    std::optional<std::string> m_identifier;
    std::optional<std::string> m_name;
    int m_processIdentifier = 0;
    xcb_window_t m_frontWindow = XCB_WINDOW_NONE; ///< the one that was in front last
    std::map<xcb_window_t, Window> m_windows;
    std::map<int, FileDescriptor> m_processes; ///< that have or had windows; pidfd_open(2)
    std::chrono::steady_clock::time_point m_hiddenAt;
};

} // namespace stillgate
