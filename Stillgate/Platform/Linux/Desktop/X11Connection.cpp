#include "Platform/Linux/Desktop/X11Connection.h"

#include <array>
#include <string_view>
#include <xcb/res.h>

namespace stillgate
{

namespace
{

/// No property that we read is longer: a list of so many windows. Threat: each program sets properties as it likes.
constexpr uint32_t longestProperty = 16384; // numbers of 32 bits

xcb_window_t rootOf(xcb_connection_t* xcb, int screen)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (; screens.rem > 1 && screen > 0; --screen)
        xcb_screen_next(&screens);
    return screens.data->root;
}

X11Atoms internAtoms(xcb_connection_t* xcb)
{
    X11Atoms atoms{};
    const std::pair<xcb_atom_t*, std::string_view> names[] = {
        {&atoms.activeWindow, "_NET_ACTIVE_WINDOW"},
        {&atoms.clientList, "_NET_CLIENT_LIST"},
        {&atoms.managementState, "WM_STATE"},
        {&atoms.windowState, "_NET_WM_STATE"},
        {&atoms.hidden, "_NET_WM_STATE_HIDDEN"},
        {&atoms.processId, "_NET_WM_PID"},
        {&atoms.applicationId, "_GTK_APPLICATION_ID"},
        {&atoms.desktopFile, "_KDE_NET_WM_DESKTOP_FILE"},
    };
    std::array<xcb_intern_atom_cookie_t, std::size(names)> questions{};
    for (size_t i = 0; i < questions.size(); ++i) {
        const auto name = names[i].second;
        questions[i] = xcb_intern_atom(xcb, 0, static_cast<uint16_t>(name.size()), name.data());
    }
    for (size_t i = 0; i < questions.size(); ++i) {
        const X11Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(xcb, questions[i], nullptr)};
        *names[i].first = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
    return atoms;
}

} // namespace

std::unique_ptr<X11Connection> X11Connection::open()
{
    int screen = 0;
    Connection xcb{xcb_connect(nullptr, &screen)};
    if (xcb_connection_has_error(xcb.get()) != 0)
        return nullptr;
    std::unique_ptr<X11Connection> connection{new X11Connection{std::move(xcb), screen}};
    return connection->isBroken() ? nullptr : std::move(connection);
}

X11Connection::X11Connection(Connection xcb, int screen)
    : m_xcb(std::move(xcb))
    , m_root(rootOf(m_xcb.get(), screen))
    , m_knowsProcesses([this] {
        const auto* resources = xcb_get_extension_data(m_xcb.get(), &xcb_res_id); // the connection owns it
        return resources != nullptr && resources->present != 0;
    }())
    , m_atoms(internAtoms(m_xcb.get()))
{}

X11Reply<xcb_generic_event_t> X11Connection::nextEvent() const
{
    return X11Reply<xcb_generic_event_t>{xcb_poll_for_event(xcb())};
}

void X11Connection::watch(xcb_window_t window, uint32_t events) const
{
    xcb_change_window_attributes(xcb(), window, XCB_CW_EVENT_MASK, &events);
}

xcb_get_property_cookie_t X11Connection::ask(xcb_window_t window, xcb_atom_t property) const
{
    return xcb_get_property(xcb(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
}

X11Reply<xcb_get_property_reply_t> X11Connection::answer(xcb_get_property_cookie_t question) const
{
    return X11Reply<xcb_get_property_reply_t>{xcb_get_property_reply(xcb(), question, nullptr)};
}

std::vector<uint32_t> numbersOf(const X11Reply<xcb_get_property_reply_t>& property)
{
    if (!property || property->format != 32)
        return {};
    const auto* numbers = static_cast<const uint32_t*>(xcb_get_property_value(property.get()));
    return {numbers, numbers + property->value_len};
}

std::string textOf(const X11Reply<xcb_get_property_reply_t>& property)
{
    if (!property || property->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(property.get())), property->value_len};
}

} // namespace stillgate
