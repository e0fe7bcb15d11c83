import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// Every text of the application. It wraps, and what it says is never read as markup.
Text {
    id: root

    property int style: Styles.Body
    readonly property var face: Styles.text(style)

    color: face.color
    font {
        pixelSize: face.size
        weight: face.weight
        letterSpacing: face.tracking
    }
    // Half of the leading above each line and half below it, so that a line stands in the middle of its height.
    lineHeightMode: Text.FixedHeight
    lineHeight: face.lineHeight
    topPadding: face.leading / 2
    bottomPadding: -face.leading / 2
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Layout.fillWidth: true
    // A role alone would hide the text from screen readers.
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
