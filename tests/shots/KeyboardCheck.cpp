#include "tests/shots/KeyboardCheck.h"

#include "tests/shots/Showing.h"

#include <QAccessible>
#include <QImage>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <set>

namespace stillgate::test
{

namespace
{

using Items = std::vector<QQuickItem*>;

/// The items below that a user can see and use, in the order of the tree.
void collectUsable(QQuickItem& item, bool (*isWanted)(const QQuickItem&), Items& found)
{
    if (!item.isVisible() || !item.isEnabled())
        return;
    if (isWanted(item))
        found.push_back(&item);
    for (auto* child : item.childItems())
        collectUsable(*child, isWanted, found);
}

Items usableItems(const QQuickWindow& window, bool (*isWanted)(const QQuickItem&))
{
    Items found;
    collectUsable(*window.contentItem(), isWanted, found);
    return found;
}

bool isTabStop(const QQuickItem& item)
{
    return item.activeFocusOnTab();
}

/// A choice among a few is one stop together with the others.
bool isPressable(const QQuickItem& item)
{
    return item.inherits("QQuickAbstractButton") && !item.property("checkable").toBool();
}

bool takesMouse(const QQuickItem& item)
{
    return item.inherits("QQuickMouseArea") || isPressable(item);
}

QString nameOf(const QQuickItem& item)
{
    const auto text = item.property("text").toString();
    const QString type = item.metaObject()->className();
    return text.isEmpty() ? type : QString{"%1 \"%2\""}.arg(type, text);
}

void collectAccessible(QAccessibleInterface& node, std::set<QObject*>& objects)
{
    objects.insert(node.object());
    for (int index = 0; index < node.childCount(); ++index)
        if (auto* child = node.child(index))
            collectAccessible(*child, objects);
}

/// Qt's controls take their text for their name, but only on a platform that has screen readers.
QString accessibleName(const QQuickItem& item, const QAccessibleInterface& accessible)
{
    const auto name = accessible.text(QAccessible::Name).trimmed();
    return name.isEmpty() && item.inherits("QQuickAbstractButton") ? item.property("text").toString() : name;
}

bool isText(const QQuickItem& item)
{
    return item.inherits("QQuickText") && !item.property("text").toString().isEmpty();
}

/// Says by `Accessible.ignored` that something else speaks for it.
bool isIgnored(const QQuickItem& item)
{
    const auto attached = item.findChildren<QObject*>(Qt::FindDirectChildrenOnly);
    return std::ranges::any_of(attached, [](const QObject* each) {
        return each->inherits("QQuickAccessibleAttached") && each->property("ignored").toBool();
    });
}

bool isTold(QQuickItem& text, const std::set<QObject*>& told)
{
    auto* accessible = QAccessible::queryAccessibleInterface(&text);
    return accessible != nullptr && told.contains(&text) && !accessible->text(QAccessible::Name).isEmpty();
}

QStringList accessibilityFindings(QQuickWindow& window)
{
    QAccessible::setActive(true); // now the controls tell what they are
    std::set<QObject*> told;
    collectAccessible(*QAccessible::queryAccessibleInterface(&window), told);
    QStringList findings;
    for (auto* text : usableItems(window, isText))
        if (!isIgnored(*text) && !isTold(*text, told))
            findings << nameOf(*text) + " isn't told by screen readers";
    for (auto* item : usableItems(window, isTabStop)) {
        auto* accessible = QAccessible::queryAccessibleInterface(item);
        if (accessible == nullptr || !told.contains(item))
            findings << nameOf(*item) + " is hidden from screen readers";
        else if (accessibleName(*item, *accessible).isEmpty())
            findings << nameOf(*item) + " has no accessible name";
        else if (accessible->role() == QAccessible::NoRole || accessible->role() == QAccessible::Client)
            findings << nameOf(*item) + " has no accessible role";
    }
    return findings;
}

QRectF placeOf(const QQuickItem& item)
{
    return item.mapRectToScene({{}, item.size()});
}

/// What scrolls as a whole and the item is in, such as a sidebar; without one, the item itself.
const QQuickItem& paneOf(const QQuickItem& item)
{
    const auto* pane = &item;
    for (const auto* at = &item; at != nullptr; at = at->parentItem())
        if (at->inherits("QQuickFlickable"))
            pane = at;
    return *pane;
}

/// One is read after the other: below it, or to the right of it in the same row.
bool comesAfter(const QRectF& one, const QRectF& other)
{
    const bool isSameRow = one.top() < other.bottom() && other.top() < one.bottom();
    return isSameRow ? one.left() >= other.left() : one.top() > other.top();
}

/// As above; a pane is read whole before the next.
bool comesAfter(const QQuickItem& one, const QQuickItem& other)
{
    const auto& pane = paneOf(one);
    const auto& otherPane = paneOf(other);
    return &pane == &otherPane ? comesAfter(placeOf(one), placeOf(other))
                               : comesAfter(placeOf(pane), placeOf(otherPane));
}

/// The window around the item; with room for a ring that stands off.
QImage pictureAround(QQuickWindow& window, const QQuickItem& item)
{
    constexpr int ring = 8;
    const auto page = window.grabWindow();
    const auto place = placeOf(item).adjusted(-ring, -ring, ring, ring);
    const auto scale = window.effectiveDevicePixelRatio();
    return page.copy(QRectF{place.topLeft() * scale, place.size() * scale}.toAlignedRect());
}

bool showsFocus(QQuickWindow& window, QQuickItem& item)
{
    const auto focused = pictureAround(window, item);
    item.setFocus(false);
    const auto plain = pictureAround(window, item);
    item.forceActiveFocus(Qt::TabFocusReason);
    return focused != plain;
}

class TabTour
{
public:
    explicit TabTour(QQuickWindow& window)
        : m_window(window)
    {}

    QStringList findings()
    {
        const auto stops = usableItems(m_window, isTabStop);
        if (!stops.empty() && m_window.activeFocusItem() == stops.front())
            QTest::keyClick(&m_window, Qt::Key_Backtab); // so that the first step leads there
        for (std::size_t step = 0; step < stops.size(); ++step) {
            QTest::keyClick(&m_window, Qt::Key_Tab);
            settle(m_window);
            auto* item = m_window.activeFocusItem();
            if (std::ranges::count(stops, item) == 0 || std::ranges::count(m_seen, item) > 0)
                break;
            lookAt(*item);
        }
        for (const auto* stop : stops)
            if (std::ranges::count(m_seen, stop) == 0)
                m_findings << "Tab doesn't reach " + nameOf(*stop);
        return m_findings;
    }

private:
    void lookAt(QQuickItem& item)
    {
        const QRectF page{{}, QSizeF{m_window.size()}};
        if (!page.contains(placeOf(item)))
            m_findings << nameOf(item) + " has the focus and can't be seen whole";
        if (!showsFocus(m_window, item))
            m_findings << nameOf(item) + " doesn't show that it has the focus";
        if (!m_seen.empty() && !comesAfter(item, *m_seen.back()))
            m_findings << QString{"Tab goes back from %1 to %2"}.arg(nameOf(*m_seen.back()), nameOf(item));
        m_seen.push_back(&item);
    }

    QQuickWindow& m_window;
    Items m_seen;
    QStringList m_findings;
};

void pressByScreenReader(QQuickItem& button)
{
    QAccessible::setActive(true);
    if (auto* accessible = QAccessible::queryAccessibleInterface(&button))
        if (auto* actions = accessible->actionInterface())
            actions->doAction(QAccessibleActionInterface::pressAction());
}

template <Qt::Key key>
void pressKey(QQuickItem& button)
{
    button.forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(button.window(), key);
}

/// Each engine numbers its types anew.
QString typeOf(const QQuickItem& item)
{
    return QString{item.metaObject()->className()}.section("_QML", 0, 0);
}

/// How a button is pressed, its type alone decides.
QQuickItem* firstOfAnotherType(const QQuickWindow& window, const std::set<QString>& types)
{
    const auto all = usableItems(window, isPressable);
    const auto found =
        std::ranges::find_if(all, [&](const QQuickItem* item) { return !types.contains(typeOf(*item)); });
    return found != all.end() ? *found : nullptr;
}

constexpr struct
{
    const char* name;
    void (*press)(QQuickItem& button);
} waysToPress[] = {
    {"Return", pressKey<Qt::Key_Return>},
    {"Enter", pressKey<Qt::Key_Enter>},
    {"Space", pressKey<Qt::Key_Space>},
    {"a screen reader", pressByScreenReader},
};

} // namespace

QStringList keyboardFindings(QQuickWindow& window)
{
    auto findings = accessibilityFindings(window) + TabTour{window}.findings();
    for (const auto* item : usableItems(window, takesMouse))
        if (!item->activeFocusOnTab() && !isIgnored(*item))
            findings << nameOf(*item) + " is for the mouse alone";
    return findings;
}

QStringList activationFindings(const Scene& scene, std::set<QString>& pressedTypes)
{
    QStringList findings;
    while (true) {
        QString type;
        for (const auto& [way, press] : waysToPress) {
            const Showing showing{scene, WindowSize::Opening}; // a press may change everything
            auto* button = firstOfAnotherType(showing.window(), pressedTypes);
            if (button == nullptr)
                return findings;
            type = typeOf(*button);
            const auto name = nameOf(*button);
            const QSignalSpy clicks{button, SIGNAL(clicked())};
            press(*button);
            if (clicks.count() != 1)
                findings << QString{"%1 is pressed %2 times by %3"}.arg(name).arg(clicks.count()).arg(way);
        }
        pressedTypes.insert(type);
    }
}

} // namespace stillgate::test
