#include "Platform/Linux/Desktop/X11WindowStacking.h"

#include <QSocketNotifier>

#include <chrono>

namespace stillgate
{

using namespace std::chrono_literals;

namespace
{

/// Between two looks at the stack: somebody else may want to be on top too, and the machine has other work.
constexpr auto betweenTwoLooks = 30ms;

/// Keeps one window in front, on a connection of its own.
class FrontWindow final : public Observation
{
public:
    FrontWindow(std::unique_ptr<X11Connection> connection, xcb_window_t window, Scheduler& scheduler,
        std::function<void()> lost)
        : m_connection(std::move(connection))
        , m_window(window)
        , m_scheduler(scheduler)
        , m_lost(std::move(lost))
        , m_readable(xcb_get_file_descriptor(m_connection->xcb()), QSocketNotifier::Read)
    {
        QObject::connect(&m_readable, &QSocketNotifier::activated, &m_readable, [this] { takeEvents(); });
        m_connection->watch(m_connection->root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
        m_connection->watch(m_window, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE);
        look();
    }

    ~FrontWindow() override
    {
        const auto active = numbersOf(
            m_connection->answer(m_connection->ask(m_connection->root(), m_connection->atoms().activeWindow)));
        if (active.empty() || active.front() == XCB_WINDOW_NONE)
            return;
        // Not by way of the window manager: that would bring back an app that has just been hidden.
        xcb_set_input_focus(m_connection->xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, active.front(), XCB_CURRENT_TIME);
        m_connection->flush();
    }

    FrontWindow(const FrontWindow&) = delete;
    FrontWindow& operator=(const FrontWindow&) = delete;

private:
    /// Whoever waits for an answer takes events out of the connection, which the socket then says nothing of: this is
    /// called again after every look.
    void takeEvents()
    {
        bool isLost = false;
        while (const auto event = m_connection->nextEvent()) {
            m_hasNews = true;
            isLost |= isEndOfWindow(*event);
        }
        if (m_connection->isBroken()) {
            m_readable.setEnabled(false);
        } else if (isLost) {
            const auto lost = std::move(m_lost); // it may destroy us
            lost();
        } else if (m_hasNews && !m_nextLook) {
            look();
        }
    }

    [[nodiscard]] bool isEndOfWindow(const xcb_generic_event_t& event) const
    {
        return (event.response_type & 0x7f) == XCB_DESTROY_NOTIFY &&
            reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == m_window;
    }

    void look()
    {
        m_hasNews = false;
        if (!isScreenLocked()) {
            putOnTop();
            takeKeyboard();
        }
        m_connection->flush();
        m_nextLook = m_scheduler.once(betweenTwoLooks, [this] {
            m_nextLook.reset();
            takeEvents();
        });
    }

    void putOnTop()
    {
        if (topmostWindow() == m_window)
            return;
        const uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_map_window(m_connection->xcb(), m_window);
        xcb_configure_window(m_connection->xcb(), m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }

    void takeKeyboard()
    {
        const X11Reply<xcb_get_input_focus_reply_t> focus{
            xcb_get_input_focus_reply(m_connection->xcb(), xcb_get_input_focus(m_connection->xcb()), nullptr)};
        if (focus && focus->focus != m_window)
            xcb_set_input_focus(m_connection->xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
    }

    /// The uppermost one that can be seen.
    [[nodiscard]] xcb_window_t topmostWindow() const
    {
        const X11Reply<xcb_query_tree_reply_t> tree{xcb_query_tree_reply(
            m_connection->xcb(), xcb_query_tree(m_connection->xcb(), m_connection->root()), nullptr)};
        if (!tree)
            return XCB_WINDOW_NONE;
        const auto* windows = xcb_query_tree_children(tree.get());
        for (int i = xcb_query_tree_children_length(tree.get()); i-- > 0;) {
            if (isViewable(windows[i]))
                return windows[i];
        }
        return XCB_WINDOW_NONE;
    }

    [[nodiscard]] bool isViewable(xcb_window_t window) const
    {
        const auto attributes = attributesOf(window);
        return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
            attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
    }

    [[nodiscard]] X11Reply<xcb_get_window_attributes_reply_t> attributesOf(xcb_window_t window) const
    {
        return X11Reply<xcb_get_window_attributes_reply_t>{xcb_get_window_attributes_reply(
            m_connection->xcb(), xcb_get_window_attributes(m_connection->xcb(), window), nullptr)};
    }

    /// THREAT: what locks the screen is a window that covers it and holds the keyboard. Nothing of ours is to be seen
    /// above it, and the keyboard is for the password.
    [[nodiscard]] bool isScreenLocked() const
    {
        const auto top = topmostWindow();
        const auto attributes = attributesOf(top);
        if (top == m_window || !attributes || attributes->override_redirect == 0)
            return false;
        const auto cover = m_connection->rectangleOf(top);
        const auto own = m_connection->rectangleOf(m_window);
        const bool coversUs = cover && own && cover->x <= own->x && cover->y <= own->y &&
            cover->x + cover->width >= own->x + own->width && cover->y + cover->height >= own->y + own->height;
        return coversUs && isKeyboardHeld();
    }

    [[nodiscard]] bool isKeyboardHeld() const
    {
        const X11Reply<xcb_grab_keyboard_reply_t> grab{xcb_grab_keyboard_reply(m_connection->xcb(),
            xcb_grab_keyboard(m_connection->xcb(), 0, m_connection->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                XCB_GRAB_MODE_ASYNC),
            nullptr)};
        if (!grab || grab->status != XCB_GRAB_STATUS_SUCCESS)
            return true;
        xcb_ungrab_keyboard(m_connection->xcb(), XCB_CURRENT_TIME);
        return false;
    }

    std::unique_ptr<X11Connection> m_connection;
    xcb_window_t m_window;
    Scheduler& m_scheduler;
    std::function<void()> m_lost;
    QSocketNotifier m_readable;
    std::unique_ptr<Timer> m_nextLook; ///< none: the next event is looked at at once
    bool m_hasNews = false;
};

} // namespace

std::unique_ptr<Observation> X11WindowStacking::keepInFront(std::uintptr_t window, std::function<void()> lost)
{
    auto connection = X11Connection::open();
    if (!connection)
        return std::make_unique<Observation>();
    return std::make_unique<FrontWindow>(
        std::move(connection), static_cast<xcb_window_t>(window), m_scheduler, std::move(lost));
}

bool X11WindowStacking::isComposited() const
{
    return m_connection && m_connection->isComposited();
}

} // namespace stillgate
