#include "DesignSystem/gallery/LayoutCheck.h"

#include <QFontMetricsF>
#include <QQuickItem>
#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace stillgate
{

namespace
{

constexpr double tolerance = 0.5;     ///< pixels; layouts round
constexpr int longestWordOfOurs = 24; ///< what is longer, such as an address, may be broken

double number(const QQuickItem& item, const char* property)
{
    return item.property(property).toDouble();
}

bool isText(const QQuickItem& item)
{
    return item.inherits("QQuickText");
}

/// The names of Qt's own types, which every component inherits.
bool isShownContent(const QQuickItem& item)
{
    constexpr const char* controls[] = {"QQuickAbstractButton", "QQuickTextInput", "QQuickTextEdit", "QQuickIconImage"};
    if (isText(item))
        return !item.property("text").toString().isEmpty();
    return std::ranges::any_of(controls, [&](const char* type) { return item.inherits(type); });
}

/// boundingRect() of a text is that of its letters.
QRectF placeIn(const QQuickItem& item)
{
    return {{}, item.size()};
}

/// Where a text stands in its item, from one edge of its paddings to the other.
QRectF textPlace(const QQuickItem& text)
{
    const double width = number(text, "contentWidth") + number(text, "leftPadding") + number(text, "rightPadding");
    const double height = number(text, "contentHeight") + number(text, "topPadding") + number(text, "bottomPadding");
    const int alignment =
        text.property("effectiveHorizontalAlignment").toInt() | text.property("verticalAlignment").toInt();
    const double left = alignment & Qt::AlignHCenter ? 0.5 : alignment & Qt::AlignRight ? 1 : 0;
    const double top = alignment & Qt::AlignVCenter ? 0.5 : alignment & Qt::AlignBottom ? 1 : 0;
    return {(text.width() - width) * left, (text.height() - height) * top, width, height};
}

bool contains(const QRectF& outer, const QRectF& inner)
{
    return outer.adjusted(-tolerance, -tolerance, tolerance, tolerance).contains(inner);
}

/// What a layout leaves behind that didn't look again when the text became shorter.
bool standsInTooTallPlace(const QQuickItem& text)
{
    return text.property("verticalAlignment").toInt() == Qt::AlignTop &&
        text.height() > textPlace(text).height() + 2 * tolerance;
}

bool hasBrokenWord(const QQuickItem& text)
{
    const double room = text.width() - number(text, "leftPadding") - number(text, "rightPadding") + tolerance;
    if (text.property("wrapMode").toInt() == 0) // Text.NoWrap
        return false;
    const QFontMetricsF metrics{text.property("font").value<QFont>()};
    const auto words = text.property("text").toString().split(QRegularExpression{"[\\s-]+"});
    return std::ranges::any_of(words, [&](const QString& word) {
        return word.size() <= longestWordOfOurs && metrics.horizontalAdvance(word) > room;
    });
}

/// Something that is shown, and how much of it.
struct Content
{
    const QQuickItem* item;
    QRectF place;      ///< in the window, without what scrolling hides
    bool isAllInReach; ///< if need be by scrolling
};

class LayoutCheck
{
public:
    explicit LayoutCheck(const QQuickWindow& window)
        : m_page({}, QSizeF{window.size()})
    {
        collect(*window.contentItem());
    }

    QStringList findings() const
    {
        QStringList all;
        for (auto one = m_contents.begin(); one != m_contents.end(); ++one) {
            all += findingsOf(*one);
            for (auto other = m_contents.begin(); other != one; ++other)
                if (areOverlapping(*one, *other))
                    all << nameOf(*other->item) + " and " + nameOf(*one->item) + " overlap";
        }
        return all;
    }

private:
    void collect(const QQuickItem& item)
    {
        // A page that can't be used lies below a question that has to be answered first.
        const bool isCovered = item.inherits("QQuickFlickable") && !item.isEnabled();
        if (!item.isVisible() || item.opacity() <= 0 || isCovered)
            return;
        if (isShownContent(item))
            m_contents.push_back(contentOf(item));
        for (const auto* child : item.childItems())
            collect(*child);
    }

    Content contentOf(const QQuickItem& item) const
    {
        QRectF whole = isText(item) ? textPlace(item) : placeIn(item);
        QRectF seen = whole;
        bool isInReach = true;
        for (const auto* at = &item; at->parentItem() != nullptr; at = at->parentItem()) {
            const auto& parent = *at->parentItem();
            whole = at->mapRectToItem(&parent, whole);
            seen = at->mapRectToItem(&parent, seen);
            const bool scrolls = parent.inherits("QQuickFlickable");
            if (scrolls || parent.clip()) {
                isInReach &= contains(scrolls ? scrollRange(parent) : placeIn(parent), whole);
                seen &= placeIn(parent);
            }
            if (scrolls)
                whole = placeIn(parent); // where it can be brought to
        }
        return {&item, seen & m_page, isInReach && contains(m_page, whole)};
    }

    /// What can be brought into a Flickable, as it stands now, in its coordinates.
    static QRectF scrollRange(const QQuickItem& flickable)
    {
        if (!flickable.property("interactive").toBool())
            return placeIn(flickable);
        const QPointF origin{number(flickable, "originX") - number(flickable, "contentX"),
            number(flickable, "originY") - number(flickable, "contentY")};
        const QSizeF size{number(flickable, "contentWidth"), number(flickable, "contentHeight")};
        return {origin, size.expandedTo(flickable.size())};
    }

    static QStringList findingsOf(const Content& content)
    {
        const auto& item = *content.item;
        QStringList all;
        if (!content.isAllInReach)
            all << nameOf(item) + " can't be seen whole";
        if (!isText(item))
            return all;
        if (item.property("truncated").toBool())
            all << nameOf(item) + " is cut";
        if (!contains(placeIn(item), textPlace(item)))
            all << nameOf(item) + " is larger than its place";
        if (standsInTooTallPlace(item))
            all << nameOf(item) + " stands at the top of a place that is too tall";
        if (hasBrokenWord(item))
            all << nameOf(item) + " is broken inside a word";
        return all;
    }

    static bool areOverlapping(const Content& one, const Content& other)
    {
        if (one.item->isAncestorOf(other.item) || other.item->isAncestorOf(one.item))
            return false;
        const auto shared = one.place & other.place;
        return shared.width() > 2 * tolerance && shared.height() > 2 * tolerance;
    }

    static QString nameOf(const QQuickItem& item)
    {
        const QString type = item.metaObject()->className();
        const auto text = item.property(item.inherits("QQuickIconImage") ? "symbol" : "text").toString();
        return QString{"%1 \"%2\""}.arg(type.section("_QML", 0, 0), text);
    }

    QRectF m_page;
    std::vector<Content> m_contents;
};

} // namespace

QStringList layoutFindings(const QQuickWindow& window)
{
    return LayoutCheck{window}.findings();
}

} // namespace stillgate
