#pragma once

#include "Platform/Linux/Desktop/X11Connection.h"

#include <optional>

namespace stillgate
{

/// What a user sees of the desktop: the windows that have been shown since this object was made, and whether there is a
/// picture in them.
class Screen
{
public:
    /// Throws std::runtime_error without a desktop.
    Screen();

    /// Whether a window of some size is shown that has more than one colour: before the first frame a window is plain.
    [[nodiscard]] bool hasPicture();

private:
    void takeEvents();
    [[nodiscard]] bool hasPicture(xcb_window_t window) const;

    std::unique_ptr<X11Connection> m_connection = X11Connection::open();
    std::vector<xcb_window_t> m_shown; ///< the frames that a window manager puts round windows count too
};

} // namespace stillgate
