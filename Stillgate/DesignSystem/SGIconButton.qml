import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// A button that is a symbol alone: `icon.name`. Its title is for those who don't see it.
T.AbstractButton {
    id: root

    required property string title
    property color color: Tokens.sgTextSecondary

    text: title
    implicitWidth: 32
    implicitHeight: 32
    opacity: enabled ? 1 : 0.5
    Layout.fillWidth: false

    Keys.onReturnPressed: event => event.isAutoRepeat || root.clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || root.clicked()
    Accessible.onPressAction: if (root.enabled) root.clicked()

    background: Rectangle {
        radius: Tokens.radiusSmall
        color: root.down ? Tokens.sgGlassHeavy : root.hovered ? Tokens.sgGlass : Tokens.clear
    }
    contentItem: Item {
        SGIcon {
            anchors.centerIn: parent
            symbol: root.icon.name
            color: root.color
        }
    }

    SGFocusRing {
        targetRadius: Tokens.radiusSmall
        visible: root.visualFocus
    }
}
