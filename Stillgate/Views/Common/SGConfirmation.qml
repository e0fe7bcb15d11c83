import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization

// A question over everything else, before something is done that can't be undone. The safe answer has the keyboard, and
// is what Escape means.
Rectangle {
    id: root

    required property string title
    required property string message
    required property string confirmTitle

    signal cancelled
    signal confirmed

    anchors.fill: parent
    color: Tokens.withOpacity(Tokens.black, 0.6)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title
    Accessible.description: message

    Component.onCompleted: if (visible)
        cancel.forceActiveFocus(Qt.TabFocusReason)
    onVisibleChanged: if (visible)
        cancel.forceActiveFocus(Qt.TabFocusReason)
    Keys.onEscapePressed: cancelled()

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        Accessible.ignored: true

        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Tokens.space24, 340)
        height: card.implicitHeight + 2 * Tokens.space24
        radius: Tokens.radiusLarge
        color: Tokens.sgBgSecondary
        border {
            width: 1
            color: Tokens.sgGlassBorder
        }

        ColumnLayout {
            id: card

            anchors.fill: parent
            anchors.margins: Tokens.space24
            spacing: Tokens.space16

            SGText {
                horizontalAlignment: Text.AlignHCenter
                style: Styles.Title
                text: root.title
                Accessible.role: Accessible.Heading
            }
            SGText {
                horizontalAlignment: Text.AlignHCenter
                color: Tokens.sgTextSecondary
                text: root.message
            }
            ColumnLayout {
                spacing: Tokens.space8

                SGButton {
                    id: cancel

                    isFullWidth: true
                    style: Styles.Secondary
                    title: L.text("common.cancel")
                    onClicked: root.cancelled()
                }
                SGButton {
                    isFullWidth: true
                    style: Styles.Danger
                    title: root.confirmTitle
                    onClicked: root.confirmed()
                }
            }
        }
    }
}
