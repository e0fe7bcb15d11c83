import QtQuick
import Stillgate.DesignSystem

// How a page scrolls without a mouse: by itself to what the keyboard comes to, and by the keys that scroll. It stands on
// the page, which forwards its keys to it.
Item {
    id: root

    required property Flickable flickable

    readonly property Item focused: Window.activeFocusItem
    readonly property real line: 40

    function isOnPage(item: Item): bool {
        let at = item;
        while (at && at !== flickable.contentItem)
            at = at.parent;
        return at !== null;
    }

    function reveal(item: Item) {
        const top = item.mapToItem(flickable.contentItem, 0, 0).y - Tokens.space16;
        const bottom = top + item.height + 2 * Tokens.space16;
        scrollTo(bottom > flickable.contentY + flickable.height ? bottom - flickable.height : Math.min(top, flickable.contentY));
    }

    function scrollBy(distance: real) {
        scrollTo(flickable.contentY + distance);
    }

    function scrollTo(y: real) {
        const first = flickable.originY - flickable.topMargin;
        const last = flickable.originY + flickable.contentHeight + flickable.bottomMargin - flickable.height;
        flickable.contentY = Math.max(first, Math.min(y, last));
    }

    onFocusedChanged: if (focused && isOnPage(focused))
        reveal(focused)
    Keys.onDownPressed: scrollBy(line)
    Keys.onUpPressed: scrollBy(-line)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageDown)
            scrollBy(flickable.height - line);
        else if (event.key === Qt.Key_PageUp)
            scrollBy(line - flickable.height);
    }
}
