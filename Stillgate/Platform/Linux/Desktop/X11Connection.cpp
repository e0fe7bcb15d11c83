#include "Platform/Linux/Desktop/X11Connection.h"

#include <algorithm>
#include <array>
#include <string_view>

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

X11Atoms internAtoms(xcb_connection_t* xcb, int screenNumber)
{
    X11Atoms atoms{};
    const auto compositor = "_NET_WM_CM_S" + std::to_string(screenNumber);
    const std::pair<xcb_atom_t*, std::string_view> names[] = {
        {&atoms.activeWindow, "_NET_ACTIVE_WINDOW"},
        {&atoms.clientList, "_NET_CLIENT_LIST"},
        {&atoms.managementState, "WM_STATE"},
        {&atoms.windowState, "_NET_WM_STATE"},
        {&atoms.hidden, "_NET_WM_STATE_HIDDEN"},
        {&atoms.windowType, "_NET_WM_WINDOW_TYPE"},
        {&atoms.desktop, "_NET_WM_WINDOW_TYPE_DESKTOP"},
        {&atoms.dock, "_NET_WM_WINDOW_TYPE_DOCK"},
        {&atoms.processId, "_NET_WM_PID"},
        {&atoms.applicationId, "_GTK_APPLICATION_ID"},
        {&atoms.desktopFile, "_KDE_NET_WM_DESKTOP_FILE"},
        {&atoms.changeState, "WM_CHANGE_STATE"},
        {&atoms.closeWindow, "_NET_CLOSE_WINDOW"},
        {&atoms.windowName, "_NET_WM_NAME"},
        {&atoms.compositor, compositor},
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

X11Connection::X11Connection(Connection xcb, int screenNumber)
    : m_xcb(std::move(xcb))
    , m_root(rootOf(m_xcb.get(), screenNumber))
    , m_knowsProcesses([this] {
        const auto* resources = xcb_get_extension_data(m_xcb.get(), &xcb_res_id); // the connection owns it
        return resources != nullptr && resources->present != 0;
    }())
    , m_atoms(internAtoms(m_xcb.get(), screenNumber))
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

void X11Connection::askWindowManager(
    xcb_window_t window, xcb_atom_t message, std::initializer_list<uint32_t> arguments) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = message;
    std::ranges::copy(arguments, std::begin(event.data.data32));
    constexpr auto toTheWindowManager = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    xcb_send_event(xcb(), 0, root(), toTheWindowManager, reinterpret_cast<const char*>(&event));
}

int X11Connection::processOf(xcb_window_t window) const
{
    if (!knowsProcesses())
        return 0;
    const xcb_res_client_id_spec_t of{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return processIn(xcb_res_query_client_ids(xcb(), 1, &of));
}

int X11Connection::processIn(xcb_res_query_client_ids_cookie_t question) const
{
    const X11Reply<xcb_res_query_client_ids_reply_t> reply{xcb_res_query_client_ids_reply(xcb(), question, nullptr)};
    if (!reply)
        return 0;
    const auto id = xcb_res_query_client_ids_ids_iterator(reply.get());
    const bool isThere = id.rem > 0 && xcb_res_client_id_value_value_length(id.data) > 0;
    return isThere ? static_cast<int>(*xcb_res_client_id_value_value(id.data)) : 0;
}

bool X11Connection::isComposited() const
{
    const X11Reply<xcb_get_selection_owner_reply_t> owner{
        xcb_get_selection_owner_reply(xcb(), xcb_get_selection_owner(xcb(), m_atoms.compositor), nullptr)};
    return owner && owner->owner != XCB_WINDOW_NONE;
}

std::optional<ScreenRectangle> X11Connection::rectangleOf(xcb_window_t window) const
{
    const auto sizeQuestion = xcb_get_geometry(xcb(), window);
    const auto placeQuestion = xcb_translate_coordinates(xcb(), window, root(), 0, 0);
    const X11Reply<xcb_get_geometry_reply_t> size{xcb_get_geometry_reply(xcb(), sizeQuestion, nullptr)};
    const X11Reply<xcb_translate_coordinates_reply_t> place{
        xcb_translate_coordinates_reply(xcb(), placeQuestion, nullptr)};
    if (!size || !place)
        return std::nullopt;
    return ScreenRectangle{place->dst_x, place->dst_y, size->width, size->height};
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
