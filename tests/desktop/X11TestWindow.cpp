#include "tests/desktop/X11TestWindow.h"

#include <tuple>
#include <xcb/xcb.h>

namespace stillgate::test
{

namespace
{

xcb_atom_t atomNamed(const X11Connection& connection, std::string_view name)
{
    auto* xcb = connection.xcb();
    const auto question = xcb_intern_atom(xcb, 0, static_cast<uint16_t>(name.size()), name.data());
    return X11Reply<xcb_intern_atom_reply_t>
    {
        xcb_intern_atom_reply(xcb, question, nullptr)
    } -> atom;
}

void putText(const X11Connection& connection, xcb_window_t window, xcb_atom_t property, const std::string& text)
{
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
        static_cast<uint32_t>(text.size()), text.data());
    xcb_flush(connection.xcb());
}

} // namespace

void putNumbers(const X11Connection& connection, xcb_window_t window, std::string_view property,
    const std::vector<uint32_t>& numbers)
{
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, atomNamed(connection, property),
        XCB_ATOM_WINDOW, 32, static_cast<uint32_t>(numbers.size()), numbers.data());
    std::ignore = numbersIn(connection, window, property); // an answer to this means that it is done
}

std::vector<uint32_t> numbersIn(const X11Connection& connection, xcb_window_t window, std::string_view property)
{
    return numbersOf(connection.answer(connection.ask(window, atomNamed(connection, property))));
}

X11TestWindow::X11TestWindow(const std::string& windowClass)
    : m_number(xcb_generate_id(m_connection->xcb()))
{
    create(windowClass);
}

void X11TestWindow::create(const std::string& windowClass) const
{
    xcb_create_window(m_connection->xcb(), XCB_COPY_FROM_PARENT, m_number, m_connection->root(), 0, 0, 200, 100, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    putNumbers(*m_connection, m_number, "_NET_WM_PID", {1});
    if (!windowClass.empty())
        putClass(windowClass);
}

void X11TestWindow::putClass(const std::string& windowClass) const
{
    const std::string zero(1, '\0');
    putText(*m_connection, m_number, XCB_ATOM_WM_CLASS, "instance" + zero + windowClass + zero);
}

void X11TestWindow::putType(std::string_view type) const
{
    putNumbers(*m_connection, m_number, "_NET_WM_WINDOW_TYPE", {atomNamed(*m_connection, type)});
}

void X11TestWindow::putApplicationId(const std::string& id) const
{
    putText(*m_connection, m_number, m_connection->atoms().applicationId, id);
}

void X11TestWindow::show() const
{
    xcb_map_window(m_connection->xcb(), m_number);
    xcb_flush(m_connection->xcb());
}

void X11TestWindow::close() const
{
    xcb_destroy_window(m_connection->xcb(), m_number);
    xcb_flush(m_connection->xcb());
}

void X11TestWindow::giveNumberToNewWindow(const std::string& windowClass) const
{
    close();
    create(windowClass);
    show();
}

void X11TestWindow::makeIcon() const
{
    constexpr uint32_t iconic = 3;
    askWindowManager("WM_CHANGE_STATE", {iconic});
}

void X11TestWindow::activate() const
{
    constexpr uint32_t onBehalfOfTheUser = 2;
    askWindowManager("_NET_ACTIVE_WINDOW", {onBehalfOfTheUser});
}

bool X11TestWindow::isActive() const
{
    return numbersIn(*m_connection, m_connection->root(), "_NET_ACTIVE_WINDOW") == std::vector{m_number};
}

void X11TestWindow::askWindowManager(std::string_view message, std::initializer_list<uint32_t> arguments) const
{
    m_connection->askWindowManager(m_number, atomNamed(*m_connection, message), arguments);
    m_connection->flush();
}

void X11TestWindow::hide() const
{
    xcb_unmap_window(m_connection->xcb(), m_number);
    m_connection->flush();
}

void X11TestWindow::leaveUnmanaged() const
{
    const uint32_t yes = 1;
    xcb_change_window_attributes(m_connection->xcb(), m_number, XCB_CW_OVERRIDE_REDIRECT, &yes);
}

void X11TestWindow::raise() const
{
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection->xcb(), m_number, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    m_connection->flush();
}

void X11TestWindow::cover() const
{
    const auto screen = m_connection->rectangleOf(m_connection->root()).value();
    const uint32_t size[] = {static_cast<uint32_t>(screen.width), static_cast<uint32_t>(screen.height)};
    xcb_configure_window(m_connection->xcb(), m_number, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
}

void X11TestWindow::fillScreen() const
{
    constexpr uint32_t add = 1;
    askWindowManager("_NET_WM_STATE", {add, atomNamed(*m_connection, "_NET_WM_STATE_FULLSCREEN")});
}

void X11TestWindow::takeKeyboard() const
{
    xcb_set_input_focus(m_connection->xcb(), XCB_INPUT_FOCUS_PARENT, m_number, XCB_CURRENT_TIME);
    m_connection->flush();
}

bool X11TestWindow::holdKeyboard() const
{
    auto* xcb = m_connection->xcb();
    const X11Reply<xcb_grab_keyboard_reply_t> grab{xcb_grab_keyboard_reply(
        xcb, xcb_grab_keyboard(xcb, 0, m_number, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr)};
    return grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11TestWindow::own(std::string_view selection) const
{
    xcb_set_selection_owner(m_connection->xcb(), m_number, atomNamed(*m_connection, selection), XCB_CURRENT_TIME);
    std::ignore = isViewable(); // an answer to this means that it is done
}

bool X11TestWindow::isViewable() const
{
    auto* xcb = m_connection->xcb();
    const X11Reply<xcb_get_window_attributes_reply_t> attributes{
        xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, m_number), nullptr)};
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// Among those that can be seen.
bool X11TestWindow::isOnTop() const
{
    auto* xcb = m_connection->xcb();
    const X11Reply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, m_connection->root()), nullptr)};
    const auto* windows = xcb_query_tree_children(tree.get());
    for (int i = xcb_query_tree_children_length(tree.get()); i-- > 0;) {
        const X11Reply<xcb_get_window_attributes_reply_t> attributes{
            xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, windows[i]), nullptr)};
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
            attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT)
            return windows[i] == m_number;
    }
    return false;
}

bool X11TestWindow::hasKeyboard() const
{
    auto* xcb = m_connection->xcb();
    const X11Reply<xcb_get_input_focus_reply_t> focus{
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr)};
    return focus && focus->focus == m_number;
}

} // namespace stillgate::test
