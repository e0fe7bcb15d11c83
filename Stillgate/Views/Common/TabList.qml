import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Common

// A screen of the settings window that is a list of any length: a heading with its buttons, what stands above the rows,
// and the rows. A delegate takes `columnX` and `columnWidth` for its place.
ListView {
    id: page

    required property string title
    property string subtitle
    property Component actions: null
    property Component above: null // with its own margins to what is around it
    property Component below: null // such as what stands in place of rows that aren't there

    // What lies over the whole window, and has to be answered first: an SGSheet or an SGConfirmation, or nothing.
    property Component sheet: null

    readonly property int margin: width < 560 ? Tokens.space24 : Tokens.space32
    readonly property real columnWidth: Math.min(width - 2 * margin, 760)
    readonly property real columnX: (width - columnWidth) / 2
    readonly property real beginning: originY - topMargin // it moves when the heading needs more lines
    property real beginningBefore

    function scrollTo(y: real) {
        scrolling.scrollTo(y);
    }

    focus: true
    keyNavigationEnabled: false // the arrow keys scroll
    currentIndex: -1 // or it would take over the keyboard, and the page, from a row that goes
    topMargin: margin
    bottomMargin: margin
    spacing: Tokens.space8
    cacheBuffer: 400
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {
        Accessible.ignored: true
    }

    onBeginningChanged: {
        if (contentY <= beginningBefore)
            contentY = beginning;
        beginningBefore = beginning;
    }
    Keys.forwardTo: [scrolling]
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            positionViewAtBeginning();
        else if (event.key === Qt.Key_End)
            positionViewAtEnd();
    }

    KeyboardScrolling {
        id: scrolling

        flickable: page
    }

    // qmllint disable unqualified
    header: ColumnLayout {
        x: page.columnX
        width: page.columnWidth
        spacing: 0

        TabHeader {
            Layout.bottomMargin: Tokens.space24
            title: page.title
            subtitle: page.subtitle
            actions: page.actions
        }
        Loader {
            Layout.fillWidth: true
            visible: sourceComponent !== null
            sourceComponent: page.above
        }
    }
    footer: Loader {
        x: page.columnX
        width: page.columnWidth
        sourceComponent: page.below
    }
    // qmllint enable unqualified
}
