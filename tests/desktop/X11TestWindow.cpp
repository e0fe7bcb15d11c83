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
    askWindowManager("WM_CHANGE_STATE", iconic);
}

void X11TestWindow::activate() const
{
    constexpr uint32_t onBehalfOfTheUser = 2;
    askWindowManager("_NET_ACTIVE_WINDOW", onBehalfOfTheUser);
}

bool X11TestWindow::isActive() const
{
    return numbersIn(*m_connection, m_connection->root(), "_NET_ACTIVE_WINDOW") == std::vector{m_number};
}

void X11TestWindow::askWindowManager(std::string_view message, uint32_t argument) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_number;
    event.type = atomNamed(*m_connection, message);
    event.data.data32[0] = argument;
    xcb_send_event(m_connection->xcb(), 0, m_connection->root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&event));
    xcb_flush(m_connection->xcb());
}

} // namespace stillgate::test
