import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A task with its reward, and a pill with its state.
RowLayout {
    id: root

    required property var row

    spacing: Tokens.space12

    SGIcon {
        symbol: root.row.symbol
        size: 20
        color: root.row.color
    }
    ColumnLayout {
        spacing: 0

        SGText {
            text: root.row.title
        }
        SGText {
            style: Styles.BodySmall
            text: root.row.reward
        }
    }
    Rectangle {
        implicitWidth: status.implicitWidth + 20
        implicitHeight: status.implicitHeight + 8
        radius: height / 2
        color: Tokens.withOpacity(root.row.statusColor, 0.15)

        SGText {
            id: status

            anchors.centerIn: parent
            style: Styles.Caption
            text: root.row.status
            color: root.row.statusColor
            font.weight: Font.Medium
            wrapMode: Text.NoWrap
        }
    }
}
