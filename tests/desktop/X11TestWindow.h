#pragma once

#include "Platform/Linux/Desktop/X11Connection.h"

#include <string>
#include <string_view>
#include <vector>

namespace stillgate::test
{

[[nodiscard]] std::vector<uint32_t> numbersIn(
    const X11Connection& connection, xcb_window_t window, std::string_view property);

/// Sets a property of 32-bit numbers, on the root window as a window manager would. On return the server has sent the
/// events.
void putNumbers(const X11Connection& connection, xcb_window_t window, std::string_view property,
    const std::vector<uint32_t>& numbers);

/// A window as an app opens it, on a connection of its own.
class X11TestWindow
{
public:
    /// With a class, if there is one, and the pid 1, as an app in a pid namespace of its own states it.
    explicit X11TestWindow(const std::string& windowClass = {});

    void putClass(const std::string& windowClass) const;
    void putType(std::string_view type) const; ///< before it is shown
    void putApplicationId(const std::string& id) const;

    void show() const;
    void hide() const;
    void close() const;
    void makeIcon() const;

    /// Before it is shown: no window manager has a say in it.
    void leaveUnmanaged() const;
    void raise() const;
    void cover() const;      ///< the whole screen, by its size
    void fillScreen() const; ///< by the window manager
    void takeKeyboard() const;
    [[nodiscard]] bool holdKeyboard() const; ///< so that no other window gets a key
    void own(std::string_view selection) const;

    [[nodiscard]] bool isViewable() const;
    [[nodiscard]] bool isOnTop() const;
    [[nodiscard]] bool hasKeyboard() const;

    /// Closes the window and shows another one with its number.
    void giveNumberToNewWindow(const std::string& windowClass) const;

    /// Asks the window manager, as a task bar would, to bring it to the front.
    void activate() const;

    [[nodiscard]] bool isActive() const;

    [[nodiscard]] xcb_window_t number() const { return m_number; }

private:
    void create(const std::string& windowClass) const;
    void askWindowManager(std::string_view message, std::initializer_list<uint32_t> arguments) const;

    std::unique_ptr<X11Connection> m_connection = X11Connection::open();
    xcb_window_t m_number;
};

} // namespace stillgate::test
