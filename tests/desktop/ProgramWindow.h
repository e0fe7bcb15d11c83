#pragma once

#include "tests/desktop/ApplicationProcess.h"
#include "tests/desktop/StatusNotifierHost.h"
#include "tests/support/AccessibilityBus.h"

namespace stillgate::test
{

/// A window of a program, used as by a person: by what its controls are and are called, and by keys. What is out of
/// sight or behind a sheet doesn't count, and what isn't there yet is waited for. What can't be done throws
/// std::runtime_error, with what there is instead.
class ProgramWindow
{
public:
    using Role = AccessibilityBus::Role;

    ProgramWindow(const AccessibilityBus& bus, const ApplicationProcess& program, std::string title);

    void press(Role role, const std::string& name) const;

    /// The keyboard to this control.
    void goTo(Role role, const std::string& name) const;

    /// Into a field, line by line.
    void type(const std::string& field, const std::vector<std::string>& lines) const;

    /// A key or several at once, as xdotool names them, once the window has the keyboard.
    void key(const std::string& keys) const;

    [[nodiscard]] bool shows(Role role, const std::string& name) const;
    /// While the window is there.
    [[nodiscard]] bool hides(Role role, const std::string& name) const;

    /// Whether the control comes to have the keyboard.
    [[nodiscard]] bool isAt(Role role, const std::string& name) const;

    [[nodiscard]] bool comes() const;
    [[nodiscard]] bool goes() const; ///< and the program goes on

private:
    using Object = AccessibilityBus::Object;

    [[nodiscard]] std::optional<Object> frame() const;
    [[nodiscard]] std::optional<Object> find(Role role, const std::string& name) const;
    [[nodiscard]] std::optional<Object> findBelow(const Object& root, Role role, const std::string& name) const;
    [[nodiscard]] Object onTopIn(const Object& window) const;
    [[nodiscard]] Object require(Role role, const std::string& name) const;
    [[nodiscard]] std::string contents() const;
    void takeKeyboard() const;

    const AccessibilityBus& m_bus;
    const ApplicationProcess& m_program;
    std::string m_title;
};

/// Whether clicks open the program's popover. One right after it has gone is the one that made it go, and opens
/// nothing: then comes another one.
[[nodiscard]] bool clickOpensPopover(const StatusNotifierHost& host);

} // namespace stillgate::test
