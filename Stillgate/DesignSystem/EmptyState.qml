import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// What stands where there is nothing to show yet.
ColumnLayout {
    id: root

    required property string symbol
    required property string title
    property string explanation

    spacing: Tokens.space12
    Layout.fillWidth: true
    Layout.topMargin: Tokens.space32
    Layout.bottomMargin: Tokens.space32

    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        implicitWidth: 72
        implicitHeight: 72
        radius: 36
        color: Tokens.sgGlass

        SGIcon {
            anchors.centerIn: parent
            symbol: root.symbol
            size: 30
            color: Tokens.sgTextSecondary
        }
    }
    SGText {
        horizontalAlignment: Text.AlignHCenter
        style: Styles.ButtonTitle
        text: root.title
    }
    SGText {
        Layout.alignment: Qt.AlignHCenter
        Layout.maximumWidth: 380
        visible: root.explanation !== ""
        horizontalAlignment: Text.AlignHCenter
        text: root.explanation
        color: Tokens.sgTextSecondary
    }
}
