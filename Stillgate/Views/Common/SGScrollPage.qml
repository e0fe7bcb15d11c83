import QtQuick
import QtQuick.Controls.Basic
import Stillgate.Views.Common

// A page that scrolls when it has more than fits.
Flickable {
    id: root

    focus: true
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {
        policy: root.interactive ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
        Accessible.ignored: true
    }
    Keys.forwardTo: [scrolling]

    KeyboardScrolling {
        id: scrolling

        flickable: root
    }
}
