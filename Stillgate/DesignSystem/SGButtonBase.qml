import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// What the buttons have in common: `icon.name` is a symbol, `onClicked` the action. They grow with their title, and
// wrap it where they can't.
T.AbstractButton {
    id: root

    required property string title
    property bool isFullWidth: false
    property bool isCompact: false // beside a heading, or in a row
    property color textColor: Tokens.sgTextPrimary

    // How it looks, and so what a picture of it can pretend.
    property bool showsHover: hovered
    property bool showsFocus: visualFocus

    text: title
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    implicitHeight: Math.max(isCompact ? 34 : 44, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: isCompact ? Tokens.space12 : Tokens.space16
    verticalPadding: isCompact ? 6 : 10
    opacity: enabled ? 1 : 0.5
    Layout.fillWidth: true
    Layout.maximumWidth: isFullWidth ? Infinity : implicitWidth

    Keys.onReturnPressed: event => event.isAutoRepeat || root.clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || root.clicked()
    Accessible.onPressAction: if (root.enabled) root.clicked()

    contentItem: RowLayout {
        spacing: Tokens.space8

        Item {
            Layout.fillWidth: true
        }

        SGIcon {
            symbol: root.icon.name
            size: root.isCompact ? 12 : 14
            color: root.textColor
            visible: symbol !== ""
        }

        SGText {
            style: root.isCompact ? Styles.Body : Styles.ButtonTitle
            font.weight: root.isCompact ? Font.Medium : Font.DemiBold
            text: root.title
            color: root.textColor
            horizontalAlignment: Text.AlignHCenter
            Layout.maximumWidth: Math.ceil(implicitWidth)
            Accessible.ignored: true
        }

        Item {
            Layout.fillWidth: true
        }
    }

    SGFocusRing {
        visible: root.showsFocus
    }
}
