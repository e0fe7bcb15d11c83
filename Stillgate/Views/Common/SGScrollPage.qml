import QtQuick
import QtQuick.Controls.Basic
import Stillgate.DesignSystem

// A page that scrolls when it has more than fits: by itself to what the keyboard comes to, and by the keys that scroll.
Flickable {
    id: root

    readonly property Item focused: Window.activeFocusItem
    readonly property real line: 40

    function isOnPage(item: Item): bool {
        let at = item;
        while (at && at !== contentItem)
            at = at.parent;
        return at !== null;
    }

    function reveal(item: Item) {
        const top = item.mapToItem(contentItem, 0, 0).y - Tokens.space16;
        const bottom = top + item.height + 2 * Tokens.space16;
        scrollTo(bottom > contentY + height ? bottom - height : Math.min(top, contentY));
    }

    function scrollTo(y: real) {
        contentY = Math.max(0, Math.min(y, contentHeight - height));
    }

    focus: true
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {
        policy: root.interactive ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
        Accessible.ignored: true
    }

    onFocusedChanged: if (focused && isOnPage(focused))
        reveal(focused)
    Keys.onDownPressed: scrollTo(contentY + line)
    Keys.onUpPressed: scrollTo(contentY - line)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageDown)
            scrollTo(contentY + height - line);
        else if (event.key === Qt.Key_PageUp)
            scrollTo(contentY - height + line);
    }
}
