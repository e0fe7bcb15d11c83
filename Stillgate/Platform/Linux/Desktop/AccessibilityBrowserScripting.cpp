#include "Platform/Linux/Desktop/AccessibilityBrowserScripting.h"

#include "Platform/WebAddress.h"

#include <QCoroDBusPendingCall>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <limits>

namespace stillgate
{

namespace
{

constexpr auto connectionName = "stillgate-accessibility";
constexpr std::size_t mostObjects = 4000; // a search looks at; a page has many more

constexpr std::string_view askableBrowsers[] = {
    "com.brave.browser",
    "com.google.chrome",
    "com.microsoft.edgemac",
    "com.vivaldi.vivaldi",
    "org.chromium.chromium",
    "org.mozilla.firefox",
};

QDBusPendingCall askLauncher(const char* interface, const char* method, const QVariantList& arguments)
{
    auto message = QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", interface, method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().asyncCall(message);
}

using Objects = std::vector<AccessibleObject>;

/// Those whose name has most in common with the title, from its beginning on: a browser says more here than there
/// ("... - Network error - ...", "... (Incognito)").
Task<Objects> windowsTitled(Objects windows, std::string title)
{
    Objects found;
    std::ptrdiff_t most = 1;
    for (const auto& window : windows) {
        const auto name = co_await window.name();
        const auto common = std::ranges::mismatch(name, title).in1 - name.begin();
        if (common < most)
            continue;
        if (common > most)
            found.clear();
        most = common;
        found.push_back(window);
    }
    co_return found;
}

/// Some think that they are active long after another one is, and others never do.
Task<Objects> windowsThatSayTheyAreActive(Objects windows)
{
    Objects found;
    for (const auto& window : windows) {
        if (has(co_await window.states(), AccessibleObject::active))
            found.push_back(window);
    }
    co_return found;
}

/// How far the upper left corners are from each other, in pixels along the edges.
int distance(const ScreenRectangle& a, const ScreenRectangle& b)
{
    return std::abs(a.x - b.x) + std::abs(a.y - b.y);
}

Task<std::optional<AccessibleObject>> windowNearest(Objects windows, std::optional<ScreenRectangle> place)
{
    std::optional<AccessibleObject> nearest;
    int least = std::numeric_limits<int>::max();
    for (const auto& window : windows) {
        const auto extents = co_await window.extents();
        const int away = extents && place ? distance(*extents, *place) : least;
        if (nearest && away >= least)
            continue;
        nearest = window;
        least = away;
    }
    co_return nearest;
}

/// The window of the program that is in front on the screen.
Task<std::optional<AccessibleObject>> frontWindow(
    AccessibleObject program, std::string title, std::optional<ScreenRectangle> place)
{
    const auto windows = co_await program.children();
    Objects candidates;
    if (!title.empty())
        candidates = co_await windowsTitled(windows, title);
    if (candidates.empty())
        candidates = co_await windowsThatSayTheyAreActive(windows);
    if (candidates.empty() && windows.size() == 1)
        candidates = windows;
    co_return co_await windowNearest(candidates, place);
}

/// The outermost object of this role that can be seen, the nearest to the root first. What is in a document belongs to
/// the page, and is passed over.
Task<std::optional<AccessibleObject>> findShown(AccessibleObject root, AccessibleObject::Role wanted)
{
    std::deque<AccessibleObject> waiting{root};
    for (std::size_t seen = 0; !waiting.empty() && seen < mostObjects; ++seen) {
        const auto object = waiting.front();
        waiting.pop_front();
        const auto role = co_await object.role();
        if (role == wanted && has(co_await object.states(), AccessibleObject::showing))
            co_return object;
        if (role == AccessibleObject::documentWeb)
            continue;
        const auto children = co_await object.children();
        waiting.insert(waiting.end(), children.begin(), children.end());
    }
    co_return std::nullopt;
}

Task<std::optional<AccessibleObject>> frontDocument(AccessibleObject window)
{
    const auto embedded = co_await window.embedded();
    for (const auto& document : embedded) {
        if (has(co_await document.states(), AccessibleObject::showing))
            co_return document;
    }
    co_return co_await findShown(window, AccessibleObject::documentWeb);
}

/// What stands in the address bar, unless somebody is writing in it.
Task<std::optional<std::string>> addressBarText(AccessibleObject window)
{
    const auto bar = co_await findShown(window, AccessibleObject::entry);
    if (!bar || has(co_await bar->states(), AccessibleObject::focused))
        co_return std::nullopt;
    auto text = co_await bar->text();
    if (text.empty())
        co_return std::nullopt;
    co_return text.find("://") == std::string::npos ? "http://" + text : text;
}

/// A page of the browser's own in the place of one that it could not load.
bool isErrorPage(const std::string& address)
{
    return address.starts_with("chrome-error:");
}

} // namespace

AccessibilityBrowserScripting::AccessibilityBrowserScripting(Log& log)
    : m_log(log)
{
    runDetached(connect());
}

Task<> AccessibilityBrowserScripting::connect()
{
    if (m_isConnecting)
        co_return;
    m_isConnecting = true;
    m_bus.reset();
    QDBusConnection::disconnectFromBus(connectionName);
    const auto on = QVariant::fromValue(QDBusVariant{true});
    const QDBusPendingCall switching =
        askLauncher("org.freedesktop.DBus.Properties", "Set", {"org.a11y.Status", "IsEnabled", on});
    co_await switching;
    const QDBusPendingCall asking = askLauncher("org.a11y.Bus", "GetAddress", {});
    const QDBusMessage answer = co_await asking;
    m_isConnecting = false;
    const auto address = answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toString() : "";
    const auto bus = QDBusConnection::connectToBus(address, connectionName);
    if (bus.isConnected())
        m_bus = bus;
    else if (!std::exchange(m_isKnownToBeAbsent, true))
        m_log.write("[Workspace] No accessibility bus: what browsers show is not seen");
}

bool AccessibilityBrowserScripting::canAsk(std::string_view bundleIdentifier) const
{
    return std::ranges::find(askableBrowsers, bundleIdentifier) != std::end(askableBrowsers);
}

Task<std::optional<std::string>> AccessibilityBrowserScripting::addressOfFrontTab(
    std::shared_ptr<RunningApplication> browser)
{
    // THREAT: the bus is the user's own to end.
    if (!m_bus || !m_bus->isConnected())
        co_await connect();
    if (!m_bus)
        co_return std::nullopt;
    const auto title = browser->frontWindowTitle().value_or("");
    const auto place = browser->frame();
    const auto program = co_await programOf(browser->processIdentifier());
    const auto window = program ? co_await frontWindow(*program, title, place) : std::nullopt;
    const auto document = window ? co_await frontDocument(*window) : std::nullopt;
    if (!document)
        co_return std::nullopt;
    auto address = co_await document->documentAddress();
    if (address && isErrorPage(*address))
        address = co_await addressBarText(*window);
    co_return address.transform(addressOfPage);
}

Task<std::optional<AccessibleObject>> AccessibilityBrowserScripting::programOf(int process)
{
    const auto programs = co_await AccessibleObject::registry(*m_bus).children();
    for (const auto& program : programs) {
        if (co_await program.process() == static_cast<uint32_t>(process))
            co_return program;
    }
    co_return std::nullopt;
}

} // namespace stillgate
