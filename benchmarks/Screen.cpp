#include "Screen.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <stdexcept>

namespace stillgate
{

namespace
{

constexpr uint16_t leastSize = 200; ///< pixels; what is smaller is a helper of some toolkit
constexpr int16_t frameWidth = 40;  ///< pixels; more than the borders and the title of any window manager

constexpr uint8_t eventKind = 0x7f; ///< without the bit that says that another client has sent it

template <class T, class Cookie>
X11Reply<T> replyTo(
    xcb_connection_t* xcb, Cookie question, T* (*take)(xcb_connection_t*, Cookie, xcb_generic_error_t**))
{
    xcb_generic_error_t* error = nullptr;
    X11Reply<T> reply{take(xcb, question, &error)};
    const X11Reply<xcb_generic_error_t> freed{error};
    return reply;
}

} // namespace

Screen::Screen()
{
    if (!m_connection)
        throw std::runtime_error{"no desktop"};
    m_connection->watch(m_connection->root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    xcb_flush(m_connection->xcb());
}

void Screen::takeEvents()
{
    while (const auto event = m_connection->nextEvent()) {
        if ((event->response_type & eventKind) == XCB_MAP_NOTIFY)
            m_shown.push_back(reinterpret_cast<const xcb_map_notify_event_t*>(event.get())->window);
    }
}

bool Screen::hasPicture()
{
    takeEvents();
    return std::ranges::any_of(m_shown, [this](xcb_window_t window) { return hasPicture(window); });
}

/// Looks at one line of pixels, from top to bottom in the middle.
bool Screen::hasPicture(xcb_window_t window) const
{
    auto* xcb = m_connection->xcb();
    const auto place = replyTo(xcb, xcb_get_geometry(xcb, window), xcb_get_geometry_reply);
    if (!place || place->width < leastSize || place->height < leastSize)
        return false;
    const auto height = static_cast<uint16_t>(place->height - 2 * frameWidth);
    const auto question = xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<int16_t>(place->width / 2),
        frameWidth, 1, height, UINT32_MAX);
    const auto image = replyTo(xcb, question, xcb_get_image_reply);
    if (!image)
        return false;
    const std::span pixels{reinterpret_cast<const uint32_t*>(xcb_get_image_data(image.get())), height};
    return std::ranges::any_of(pixels, [&](uint32_t pixel) { return pixel != pixels.front(); });
}

} // namespace stillgate
