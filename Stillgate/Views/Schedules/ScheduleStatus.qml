import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// Whether a schedule is on.
RowLayout {
    id: root

    required property var row

    spacing: 6
    Layout.fillWidth: false

    StatusDot {
        implicitWidth: 6
        implicitHeight: 6
        color: root.row.isEnabled ? Tokens.sgSuccess : Tokens.sgTextMuted
    }
    SGText {
        Layout.fillWidth: false
        style: Styles.Caption
        text: root.row.statusText
    }
}
