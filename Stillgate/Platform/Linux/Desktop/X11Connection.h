#pragma once

#include "Platform/ScreenRectangle.h"

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xcb/res.h>
#include <xcb/xcb.h>

namespace stillgate
{

struct FreeX11Reply
{
    void operator()(void* reply) const { std::free(reply); }
};

/// What the X server sent, or null.
template <class T>
using X11Reply = std::unique_ptr<T, FreeX11Reply>;

/// The names that window managers and toolkits have agreed on, as this server numbers them.
struct X11Atoms
{
    xcb_atom_t activeWindow;    ///< _NET_ACTIVE_WINDOW
    xcb_atom_t clientList;      ///< _NET_CLIENT_LIST
    xcb_atom_t managementState; ///< WM_STATE
    xcb_atom_t windowState;     ///< _NET_WM_STATE
    xcb_atom_t hidden;          ///< _NET_WM_STATE_HIDDEN
    xcb_atom_t windowType;      ///< _NET_WM_WINDOW_TYPE
    xcb_atom_t desktop;         ///< _NET_WM_WINDOW_TYPE_DESKTOP
    xcb_atom_t dock;            ///< _NET_WM_WINDOW_TYPE_DOCK
    xcb_atom_t processId;       ///< _NET_WM_PID
    xcb_atom_t applicationId;   ///< _GTK_APPLICATION_ID
    xcb_atom_t desktopFile;     ///< _KDE_NET_WM_DESKTOP_FILE
    xcb_atom_t changeState;     ///< WM_CHANGE_STATE
    xcb_atom_t closeWindow;     ///< _NET_CLOSE_WINDOW
    xcb_atom_t windowName;      ///< _NET_WM_NAME
    xcb_atom_t compositor;      ///< _NET_WM_CM_Sn, n the number of the screen
};

/// A connection of our own to the X server, beside the toolkit's. SIGPIPE has to be ignored: the server may go away at
/// any time, and then every question has null for an answer.
class X11Connection
{
public:
    /// To the user's display; null if there is none.
    [[nodiscard]] static std::unique_ptr<X11Connection> open();

    [[nodiscard]] xcb_connection_t* xcb() const { return m_xcb.get(); }

    [[nodiscard]] xcb_window_t root() const { return m_root; }

    [[nodiscard]] const X11Atoms& atoms() const { return m_atoms; }

    /// Whether the server can tell which process a window belongs to.
    [[nodiscard]] bool knowsProcesses() const { return m_knowsProcesses; }

    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(xcb()) != 0; }

    [[nodiscard]] X11Reply<xcb_generic_event_t> nextEvent() const;

    /// From now on, the events of these kinds (XCB_EVENT_MASK_...) tell what happens to the window.
    void watch(xcb_window_t window, uint32_t events) const;

    /// Asks for a property; several questions asked before the first answer is taken cost one round trip.
    [[nodiscard]] xcb_get_property_cookie_t ask(xcb_window_t window, xcb_atom_t property) const;
    [[nodiscard]] X11Reply<xcb_get_property_reply_t> answer(xcb_get_property_cookie_t question) const;

    /// Asks for something to be done to a window (EWMH, root window messages); sent by `flush`, or with the next
    /// question.
    void askWindowManager(xcb_window_t window, xcb_atom_t message, std::initializer_list<uint32_t> arguments) const;

    void flush() const { xcb_flush(xcb()); }

    /// The process that owns the window, in the server's pid namespace; 0 if it is none of this machine, or if the
    /// server can't tell.
    [[nodiscard]] int processOf(xcb_window_t window) const;

    /// The answer to such a question, asked before.
    [[nodiscard]] int processIn(xcb_res_query_client_ids_cookie_t question) const;

    /// Whether windows are put together by somebody who can draw one through another (EWMH, compositing managers).
    [[nodiscard]] bool isComposited() const;

    /// Where the window stands, without what the window manager puts around it; nothing for one that is no more.
    [[nodiscard]] std::optional<ScreenRectangle> rectangleOf(xcb_window_t window) const;

private:
    struct Disconnect
    {
        void operator()(xcb_connection_t* xcb) const { xcb_disconnect(xcb); }
    };

    using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

    X11Connection(Connection xcb, int screenNumber);

    Connection m_xcb;
    xcb_window_t m_root;
    bool m_knowsProcesses;
    X11Atoms m_atoms;
};

/// A property of 32-bit numbers; empty if it is anything else.
[[nodiscard]] std::vector<uint32_t> numbersOf(const X11Reply<xcb_get_property_reply_t>& property);

/// A property of bytes; empty if it is anything else.
[[nodiscard]] std::string textOf(const X11Reply<xcb_get_property_reply_t>& property);

} // namespace stillgate
