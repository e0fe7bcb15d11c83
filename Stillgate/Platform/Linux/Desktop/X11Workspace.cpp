#include "Platform/Linux/Desktop/X11Workspace.h"

#include "Platform/Linux/Desktop/BrowserLauncher.h"

#include <algorithm>

namespace stillgate
{

namespace
{

/// Window managers name no active window for some moments between two, also between two of one app.
constexpr std::chrono::milliseconds betweenTwoWindows{100};

} // namespace

X11Workspace::X11Workspace(std::unique_ptr<X11Connection> events, std::shared_ptr<X11Connection> requests,
    DesktopEntries& entries, Scheduler& scheduler, Log& log)
    : m_connection(std::move(events))
    , m_requests(std::move(requests))
    , m_entries(entries)
    , m_scheduler(scheduler)
    , m_log(log)
    , m_readable(xcb_get_file_descriptor(m_connection->xcb()), QSocketNotifier::Read)
{
    QObject::connect(&m_readable, &QSocketNotifier::activated, &m_readable, [this] { takeEvents(); });
    m_connection->watch(m_connection->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    takeEvents();
}

std::unique_ptr<Observation> X11Workspace::onActivation(ApplicationObserver observer)
{
    return m_activation.add(std::move(observer));
}

std::unique_ptr<Observation> X11Workspace::onLaunch(ApplicationObserver observer)
{
    return m_launch.add(std::move(observer));
}

std::optional<std::string> X11Workspace::nameOfApplication(std::string_view bundleIdentifier) const
{
    return m_entries.nameOf(bundleIdentifier);
}

std::vector<ApplicationDescription> X11Workspace::installedApplications() const
{
    return m_entries.installedApplications();
}

std::vector<ApplicationDescription> X11Workspace::runningApplications() const
{
    std::vector<ApplicationDescription> running;
    std::set<std::string> seen;
    for (const auto window : m_order) {
        const auto found = m_windows.find(window);
        if (found == m_windows.end() || !found->second->isRegular())
            continue;
        const auto identifier = found->second->bundleIdentifier();
        if (identifier && seen.insert(*identifier).second)
            running.emplace_back(
                *identifier, found->second->localizedName().value_or(*identifier), m_entries.iconOf(*identifier));
    }
    return running;
}

void X11Workspace::open(const std::string& url)
{
    openInBrowser(url, m_log);
}

/// Whoever waits for an answer reads events too, which the socket then says nothing of: the last look is for events.
void X11Workspace::takeEvents()
{
    for (;;) {
        while (const auto event = m_connection->nextEvent())
            noteEvent(*event);
        if (m_connection->isBroken())
            return loseConnection();
        if (!isOutdated())
            return;
        update();
    }
}

void X11Workspace::noteEvent(const xcb_generic_event_t& event)
{
    constexpr auto sentByAnotherClient = 0x80;
    const auto type = event.response_type & ~sentByAnotherClient;
    if (type == XCB_PROPERTY_NOTIFY)
        noteChange(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    if (type == XCB_DESTROY_NOTIFY) {
        // Its number soon belongs to another window, perhaps before we look at the list.
        removeWindow(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        m_desktopIsOutdated = true;
    }
}

void X11Workspace::noteChange(const xcb_property_notify_event_t& change)
{
    const auto& atoms = m_connection->atoms();
    if (change.window == m_connection->root()) {
        m_desktopIsOutdated |= change.atom == atoms.activeWindow || change.atom == atoms.clientList;
        return;
    }
    // Titles change all the time.
    const auto watched = {atoms.managementState, atoms.windowState, atoms.applicationId, atoms.desktopFile,
        xcb_atom_t{XCB_ATOM_WM_CLASS}};
    if (std::ranges::find(watched, change.atom) != watched.end())
        m_outdatedWindows.insert(change.window);
}

/// Two round trips at most, one if no window is new or changed.
void X11Workspace::update()
{
    if (m_desktopIsOutdated)
        updateDesktop();
    updateWindows();
    tellLaunches();
    updateFront();
}

void X11Workspace::updateDesktop()
{
    m_desktopIsOutdated = false;
    const auto activeQuestion = m_connection->ask(m_connection->root(), m_connection->atoms().activeWindow);
    const auto listQuestion = m_connection->ask(m_connection->root(), m_connection->atoms().clientList);
    const auto active = numbersOf(m_connection->answer(activeQuestion));
    m_order = numbersOf(m_connection->answer(listQuestion));

    m_active = active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
    m_listed = {m_order.begin(), m_order.end()};
    auto known = m_listed;
    // It may not be listed yet, or never be.
    if (m_active != XCB_WINDOW_NONE)
        known.insert(m_active);
    for (const auto window : known) {
        if (m_windows.contains(window))
            continue;
        // Before the questions, so that no change is missed.
        m_connection->watch(window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        m_outdatedWindows.insert(window);
    }
    for (const auto& [window, application] : m_windows) {
        if (!m_listed.contains(window))
            m_outdatedWindows.insert(window);
    }
}

void X11Workspace::updateWindows()
{
    std::vector<X11WindowQuery> queries;
    for (const auto window : std::exchange(m_outdatedWindows, {}))
        queries.emplace_back(*m_connection, window);
    for (const auto& query : queries)
        updateWindow(query.window(), query.answer());
}

/// A window that the window manager lists no more is gone once it is destroyed or withdrawn: a window manager that
/// starts anew lists none for a while. One that was withdrawn may be called active still; where nobody manages windows,
/// that is all that is said of one.
void X11Workspace::updateWindow(xcb_window_t window, const std::optional<X11WindowFacts>& facts)
{
    const bool isActiveOne = window == m_active && !m_managed.contains(window);
    if (!facts || (!facts->isManaged && !m_listed.contains(window) && !isActiveOne))
        return removeWindow(window);
    if (facts->isManaged)
        m_managed.insert(window);
    const auto application = runningApplication(*facts);
    application->putWindow(window, {facts->processIdentifier, facts->isIconic, facts->isFurniture});
    const auto before = std::exchange(m_windows[window], application);
    if (before && before != application) {
        before->removeWindow(window);
        forgetEndedApplications();
    }
}

void X11Workspace::removeWindow(xcb_window_t window)
{
    m_managed.erase(window);
    const auto found = m_windows.find(window);
    if (found == m_windows.end())
        return;
    found->second->removeWindow(window);
    m_windows.erase(found);
    forgetEndedApplications();
}

void X11Workspace::forgetEndedApplications()
{
    std::erase_if(m_running, [](const auto& running) { return !running.second->hasWindows(); });
}

X11Workspace::Application X11Workspace::runningApplication(const X11WindowFacts& facts)
{
    auto identifier = m_entries.bundleIdentifierFor(facts.hints);
    auto& application = m_running[{identifier, identifier ? 0 : facts.processIdentifier}];
    if (!application) {
        auto name = identifier ? m_entries.nameOf(*identifier) : std::nullopt;
        if (!name && !facts.hints.windowClass.empty())
            name = facts.hints.windowClass;
        application = std::make_shared<X11Application>(m_requests, std::move(identifier), std::move(name));
        m_launched.push_back(application);
    }
    return application;
}

void X11Workspace::tellLaunches()
{
    for (const auto& application : std::exchange(m_launched, {}))
        m_launch.notify(application);
}

void X11Workspace::updateFront()
{
    const auto active = m_windows.find(m_active);
    if (active != m_windows.end() && active->second->isVisible()) {
        active->second->windowIsInFront(m_active);
        setFront(active->second);
    } else if (m_front && !m_front->isVisible()) {
        setFront(nullptr);
    } else if (m_front && !m_nothingInFront) {
        m_nothingInFront = m_scheduler.once(betweenTwoWindows, [this] { declareNothingInFront(); });
    }
}

void X11Workspace::declareNothingInFront()
{
    takeEvents(); // the next window may wait in them
    if (m_nothingInFront)
        setFront(nullptr);
}

void X11Workspace::setFront(Application application)
{
    m_nothingInFront.reset();
    if (m_front == application)
        return;
    m_front = std::move(application);
    m_activation.notify(m_front);
}

void X11Workspace::loseConnection()
{
    m_readable.setEnabled(false);
    m_log.write("[Workspace] The connection to the X server is lost: apps are not seen any more");
    m_windows.clear();
    m_running.clear();
    setFront(nullptr);
}

} // namespace stillgate
