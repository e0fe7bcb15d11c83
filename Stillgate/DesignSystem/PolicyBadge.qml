import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

Rectangle {
    id: root

    required property string policy
    readonly property var look: Styles.policy(policy)

    implicitWidth: row.implicitWidth + 20
    implicitHeight: row.implicitHeight + 8
    radius: Math.min(height, 24) / 2
    color: Tokens.withOpacity(look.color, 0.12)
    Layout.fillWidth: true
    Layout.maximumWidth: implicitWidth

    RowLayout {
        id: row

        anchors.centerIn: parent
        width: Math.min(implicitWidth, root.width - 20)
        spacing: 6

        SGIcon {
            symbol: root.look.symbol
            size: 11
            color: root.look.color
        }

        SGText {
            style: Styles.Hint
            text: root.look.text
            color: root.look.color
            font.weight: Font.Medium
        }
    }
}
