#include "Platform/Linux/Desktop/X11Application.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace stillgate
{

namespace
{

constexpr uint32_t iconicState = 3;       // WM_CHANGE_STATE, ICCCM 4.1.4
constexpr uint32_t sentByThePager = 2;    // source indication, EWMH: the user's own wish
constexpr uint32_t atAnUnknownMoment = 0; // XCB_CURRENT_TIME

/// A window that comes so soon after its app was hidden was on its way, and goes the way of the others.
constexpr std::chrono::seconds stillHiding{2};

bool hasEnded(const FileDescriptor& process)
{
    pollfd ended{.fd = process.number(), .events = POLLIN, .revents = 0};
    return ::poll(&ended, 1, 0) == 1;
}

} // namespace

std::string X11Application::executablePath() const
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/" + std::to_string(m_processIdentifier) + "/exe", error).string();
}

void X11Application::hide()
{
    m_hiddenAt = std::chrono::steady_clock::now();
    for (const auto& [number, window] : m_windows) {
        if (!window.isIconic)
            hide(number);
    }
    m_connection->flush();
}

void X11Application::hide(xcb_window_t window)
{
    m_connection->askWindowManager(window, m_connection->atoms().changeState, {iconicState});
}

void X11Application::terminate()
{
    for (const auto& [number, window] : m_windows)
        m_connection->askWindowManager(number, m_connection->atoms().closeWindow, {atAnUnknownMoment, sentByThePager});
    m_connection->flush();
}

void X11Application::forceTerminate()
{
    for (const auto& [number, window] : m_windows) {
        if (!m_processes.contains(window.processIdentifier))
            xcb_kill_client(m_connection->xcb(), number);
    }
    m_connection->flush();
    for (const auto& [number, process] : m_processes)
        ::syscall(SYS_pidfd_send_signal, process.number(), SIGKILL, nullptr, 0);
}

bool X11Application::isTerminated() const
{
    return !hasWindows() &&
        std::ranges::all_of(m_processes, [](const auto& process) { return hasEnded(process.second); });
}

/// THREAT: between the moment at which the number of a process is read and the one at which a signal goes out, it may
/// have become a stranger's. The descriptor is taken first: if its process still owns the window afterwards, it is the
/// right one, and the descriptor never means another.
void X11Application::watchProcess(xcb_window_t window, int process)
{
    if (process <= 0 || process == ::getpid() || m_processes.contains(process))
        return;
    FileDescriptor descriptor{static_cast<int>(::syscall(SYS_pidfd_open, process, 0))};
    if (!descriptor.isOpen() || m_connection->processOf(window) != process)
        return;
    std::erase_if(m_processes, [](const auto& other) { return hasEnded(other.second); });
    m_processes.emplace(process, std::move(descriptor));
}

std::optional<std::string> X11Application::frontWindowTitle() const
{
    if (m_frontWindow == XCB_WINDOW_NONE)
        return std::nullopt;
    return textOf(m_connection->answer(m_connection->ask(m_frontWindow, m_connection->atoms().windowName)));
}

std::optional<ScreenRectangle> X11Application::frame() const
{
    if (m_frontWindow != XCB_WINDOW_NONE)
        return m_connection->rectangleOf(m_frontWindow);
    // None was in front yet.
    const auto shown = std::ranges::find_if(m_windows, [](const auto& window) { return !window.second.isIconic; });
    return shown != m_windows.end() ? m_connection->rectangleOf(shown->first) : std::nullopt;
}

void X11Application::putWindow(xcb_window_t number, Window window)
{
    if (m_windows.empty())
        m_processIdentifier = window.processIdentifier;
    watchProcess(number, window.processIdentifier);
    const bool wasOnItsWay =
        !m_windows.contains(number) && !window.isIconic && std::chrono::steady_clock::now() - m_hiddenAt < stillHiding;
    m_windows[number] = window;
    if (wasOnItsWay) {
        hide(number);
        m_connection->flush();
    }
}

void X11Application::removeWindow(xcb_window_t number)
{
    m_windows.erase(number);
    if (m_frontWindow == number)
        m_frontWindow = XCB_WINDOW_NONE;
    const bool processHasWindows = std::ranges::any_of(
        m_windows, [this](const auto& window) { return window.second.processIdentifier == m_processIdentifier; });
    if (hasWindows() && !processHasWindows)
        m_processIdentifier = m_windows.begin()->second.processIdentifier;
}

void X11Application::windowIsInFront(xcb_window_t number)
{
    m_frontWindow = number;
    m_processIdentifier = m_windows.at(number).processIdentifier;
}

bool X11Application::isRegular() const
{
    return !std::ranges::all_of(m_windows, [](const auto& window) { return window.second.isFurniture; });
}

bool X11Application::isVisible() const
{
    return !std::ranges::all_of(m_windows, [](const auto& window) { return window.second.isIconic; });
}

} // namespace stillgate
