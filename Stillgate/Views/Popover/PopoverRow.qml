import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// An action of the panel: icon, label, and the hint of its key.
T.AbstractButton {
    id: row

    required property string label
    property string keyHint
    property bool isDanger: false
    readonly property color inkColor: isDanger ? Tokens.sgDanger : Tokens.sgTextPrimary

    text: label
    horizontalPadding: Tokens.space8
    verticalPadding: 6
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    Layout.fillWidth: true

    Keys.onReturnPressed: event => event.isAutoRepeat || row.clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || row.clicked()
    Accessible.onPressAction: if (row.enabled) row.clicked()

    background: Rectangle {
        radius: Tokens.radiusSmall
        color: row.down ? Tokens.sgGlassHeavy : row.hovered ? Tokens.sgGlass : Tokens.clear
    }
    contentItem: RowLayout {
        spacing: Tokens.space12

        SGIcon {
            symbol: row.icon.name
            color: row.inkColor
        }
        SGText {
            text: row.label
            color: row.inkColor
            Accessible.ignored: true
        }
        SGText {
            Layout.fillWidth: false
            visible: text !== ""
            style: Styles.Hint
            text: row.keyHint
            color: Tokens.sgTextMuted
            Accessible.ignored: true
        }
    }

    SGFocusRing {
        targetRadius: Tokens.radiusSmall
        visible: row.visualFocus
    }
}
