#pragma once

#include "Platform/Workspace.h"

#include <algorithm>
#include <map>
#include <xcb/xproto.h>

namespace stillgate
{

/// An app with windows on an X11 desktop. One whose windows are all gone has ended, as far as this desktop can tell.
class X11Application final : public RunningApplication
{
public:
    struct Window
    {
        int processIdentifier = 0;
        bool isIconic = false;
    };

    explicit X11Application(std::optional<std::string> identifier)
        : m_identifier(std::move(identifier))
    {}

    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return m_identifier; }

    /// An app may have several; then it is that of the window that was in front last.
    [[nodiscard]] int processIdentifier() const override { return m_processIdentifier; }

    void putWindow(xcb_window_t number, Window window)
    {
        if (m_windows.empty())
            m_processIdentifier = window.processIdentifier;
        m_windows[number] = window;
    }

    void removeWindow(xcb_window_t number)
    {
        m_windows.erase(number);
        const bool processHasWindows = std::ranges::any_of(
            m_windows, [this](const auto& window) { return window.second.processIdentifier == m_processIdentifier; });
        if (hasWindows() && !processHasWindows)
            m_processIdentifier = m_windows.begin()->second.processIdentifier;
    }

    void windowIsInFront(xcb_window_t number) { m_processIdentifier = m_windows.at(number).processIdentifier; }

    [[nodiscard]] bool hasWindows() const { return !m_windows.empty(); }

    /// Whether any of its windows is more than an icon.
    [[nodiscard]] bool isVisible() const
    {
        return !std::ranges::all_of(m_windows, [](const auto& window) { return window.second.isIconic; });
    }

private:
    std::optional<std::string> m_identifier;
    int m_processIdentifier = 0;
    std::map<xcb_window_t, Window> m_windows;
};

} // namespace stillgate
