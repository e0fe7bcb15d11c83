import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.BlockScreen

// The question before the user goes on, over everything else. The safe answer has the keyboard.
Rectangle {
    id: root

    required property BlockModalViewModel viewModel

    color: Tokens.withOpacity(Tokens.black, 0.6)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: L.text("common.confirm")

    onVisibleChanged: if (visible)
        cancel.forceActiveFocus(Qt.TabFocusReason)

    MouseArea {
        anchors.fill: parent
        Accessible.ignored: true
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
                text: L.text("common.confirm")
                Accessible.role: Accessible.Heading
            }
            SGText {
                horizontalAlignment: Text.AlignHCenter
                color: Tokens.sgTextSecondary
                text: L.text("blockScreenMotivation.streakBreakWarning")
            }
            ColumnLayout {
                spacing: Tokens.space8

                SGButton {
                    id: cancel

                    isFullWidth: true
                    style: Styles.Secondary
                    title: L.text("common.cancel")
                    onClicked: root.viewModel.cancelConfirm()
                }
                SGButton {
                    isFullWidth: true
                    style: Styles.Danger
                    title: L.text("blockScreen.continue")
                    onClicked: root.viewModel.continueAnyway()
                }
            }
        }
    }
}
