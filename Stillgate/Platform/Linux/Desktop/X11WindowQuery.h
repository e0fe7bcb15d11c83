#pragma once

#include "Platform/Linux/Desktop/DesktopEntries.h"
#include "Platform/Linux/Desktop/X11Connection.h"

#include <optional>

namespace stillgate
{

/// What a window and the X server say about it.
struct X11WindowFacts
{
    /// Whether the window manager shows it or has made it an icon. Windows keep this while it starts anew.
    bool isManaged = false;
    bool isIconic = false;
    bool isFurniture = false;  ///< of the desktop: its background, a panel or a dock
    int processIdentifier = 0; ///< 0 if unknown
    AppHints hints;
};

/// All questions about a window, on their way from the construction on. Ask about several before the first answer.
class X11WindowQuery
{
public:
    X11WindowQuery(const X11Connection& connection, xcb_window_t window);

    [[nodiscard]] xcb_window_t window() const { return m_window; }

    /// To be called once. Nothing for a window that is no more.
    [[nodiscard]] std::optional<X11WindowFacts> answer() const;

private:
    const X11Connection& m_connection;
    xcb_window_t m_window;
    xcb_get_property_cookie_t m_managementState;
    xcb_get_property_cookie_t m_windowState;
    xcb_get_property_cookie_t m_type;
    xcb_get_property_cookie_t m_class;
    xcb_get_property_cookie_t m_applicationId;
    xcb_get_property_cookie_t m_desktopFile;
    xcb_get_property_cookie_t m_statedProcess;
    std::optional<xcb_res_query_client_ids_cookie_t> m_process;
};

} // namespace stillgate
