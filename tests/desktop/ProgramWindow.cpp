#include "tests/desktop/ProgramWindow.h"

#include <QDeadlineTimer>

namespace stillgate::test
{

using State = AccessibilityBus::State;

ProgramWindow::ProgramWindow(const AccessibilityBus& bus, const ApplicationProcess& program, std::string title)
    : m_bus(bus)
    , m_program(program)
    , m_title(std::move(title))
{}

void ProgramWindow::press(Role role, const std::string& name) const
{
    if (!m_bus.doAction(require(role, name)))
        throw std::runtime_error{"can't press " + name};
}

void ProgramWindow::goTo(Role role, const std::string& name) const
{
    takeKeyboard();
    (void)m_bus.takeFocus(require(role, name));
    if (!isAt(role, name))
        throw std::runtime_error{"the keyboard doesn't come to " + name};
}

void ProgramWindow::type(const std::string& field, const std::vector<std::string>& lines) const
{
    goTo(Role::Text, field);
    for (std::size_t line = 0; line < lines.size(); ++line)
        shell("xdotool " + std::string{line > 0 ? "key Return " : ""} + "type '" + lines[line] + "'");
}

void ProgramWindow::key(const std::string& keys) const
{
    takeKeyboard();
    shell("xdotool key " + keys);
}

bool ProgramWindow::shows(Role role, const std::string& name) const
{
    return becomes([&] { return find(role, name).has_value(); });
}

bool ProgramWindow::hides(Role role, const std::string& name) const
{
    return becomes([&] {
        const auto window = frame();
        return window && !findBelow(onTopIn(*window), role, name);
    });
}

bool ProgramWindow::isAt(Role role, const std::string& name) const
{
    return becomes([&] {
        const auto control = find(role, name);
        return control && m_bus.is(*control, State::Focused);
    });
}

bool ProgramWindow::comes() const
{
    return becomes([this] { return isInFront(m_title); });
}

bool ProgramWindow::goes() const
{
    return becomes([this] { return windowTitled(m_title).empty(); }) && m_program.isRunning();
}

std::optional<ProgramWindow::Object> ProgramWindow::frame() const
{
    const auto application = m_bus.application(m_program.pid());
    return application ? findBelow(*application, Role::Frame, m_title) : std::nullopt;
}

std::optional<ProgramWindow::Object> ProgramWindow::find(Role role, const std::string& name) const
{
    const auto window = frame();
    return window ? findBelow(onTopIn(*window), role, name) : std::nullopt;
}

std::optional<ProgramWindow::Object> ProgramWindow::findBelow(
    const Object& root, Role role, const std::string& name) const
{
    return m_bus.find(root, [&](const Object& object) {
        return m_bus.name(object) == QString::fromStdString(name) && m_bus.role(object) == role &&
            m_bus.is(object, State::Showing);
    });
}

/// What lies over the window and has to be answered first, or all of it.
ProgramWindow::Object ProgramWindow::onTopIn(const Object& window) const
{
    const auto sheet = m_bus.find(window, [this](const Object& object) {
        const auto role = m_bus.role(object);
        return (role == Role::Dialog || role == Role::Alert) && m_bus.is(object, State::Showing);
    });
    return sheet.value_or(window);
}

ProgramWindow::Object ProgramWindow::require(Role role, const std::string& name) const
{
    std::optional<Object> control;
    if (!becomes([&] { return (control = find(role, name)).has_value(); }))
        throw std::runtime_error{m_title + " has no " + name + ", but\n" + contents()};
    return *control;
}

/// Role and name of everything that the program has.
std::string ProgramWindow::contents() const
{
    std::string text;
    if (const auto application = m_bus.application(m_program.pid()))
        (void)m_bus.find(*application, [&](const Object& object) {
            text += std::to_string(std::to_underlying(m_bus.role(object))) + ' ' + m_bus.name(object).toStdString();
            text += m_bus.is(object, State::Showing) ? "\n" : " (hidden)\n";
            return false;
        });
    return text;
}

void ProgramWindow::takeKeyboard() const
{
    const bool hasKeyboard = becomes([this] {
        if (isInFront(m_title))
            return true;
        shell("xdotool search --onlyvisible --name '^" + m_title + "$' windowactivate 2>/dev/null");
        return false;
    });
    if (!hasKeyboard)
        throw std::runtime_error{"the keyboard doesn't come to " + m_title};
}

bool clickOpensPopover(const StatusNotifierHost& host)
{
    constexpr auto popover = "Stillgate";
    return becomes([&] {
        host.activate();
        const QDeadlineTimer moment{std::chrono::seconds{1}};
        return becomes([&] { return isInFront(popover) || moment.hasExpired(); }) && isInFront(popover);
    });
}

} // namespace stillgate::test
