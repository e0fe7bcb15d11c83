import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.BlockScreen
import Stillgate.Views.Common

// A card with its own corners; what is around them is the window's business.
Rectangle {
    id: root

    required property BlockModalViewModel viewModel
    readonly property int margin: Tokens.space32

    implicitWidth: Math.max(420, column.implicitWidth + 2 * margin)
    implicitHeight: column.implicitHeight + 2 * margin
    color: Tokens.sgBgPrimary
    radius: Tokens.radiusExtraLarge
    border {
        width: 1
        color: Tokens.sgGlassBorder
    }
    Accessible.role: Accessible.Dialog
    Accessible.name: viewModel.title

    Keys.onEscapePressed: viewModel.showConfirm ? viewModel.cancelConfirm() : viewModel.dismiss()

    SGScrollPage {
        anchors.fill: parent
        anchors.margins: 1
        contentWidth: width
        contentHeight: Math.max(height, column.implicitHeight + 2 * root.margin)
        enabled: !root.viewModel.showConfirm
        clip: interactive
        Keys.onReturnPressed: root.viewModel.dismiss()
        Keys.onEnterPressed: root.viewModel.dismiss()

        ColumnLayout {
            id: column

            anchors.centerIn: parent
            width: parent.width - 2 * root.margin
            spacing: Tokens.space24

            Image {
                id: picture

                Layout.alignment: Qt.AlignHCenter
                Layout.preferredWidth: 240
                Layout.preferredHeight: 180
                visible: status === Image.Ready
                source: root.viewModel.illustration
                sourceSize {
                    width: 240 * Screen.devicePixelRatio
                    height: 180 * Screen.devicePixelRatio
                }
                Accessible.ignored: true
            }
            SGIcon {
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Tokens.space16
                Layout.bottomMargin: Tokens.space16
                visible: !picture.visible
                symbol: root.viewModel.symbol
                size: 48
                color: Tokens.sgAccent
            }
            Column {
                Layout.fillWidth: true
                spacing: Tokens.space12

                SGText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    style: Styles.Title
                    text: root.viewModel.title
                    Accessible.role: Accessible.Heading
                }
                EvenText {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: preferredWidth
                    longestLine: column.width
                    text: root.viewModel.subtitle
                }
            }
            Rectangle {
                id: session

                Layout.alignment: Qt.AlignHCenter
                Layout.maximumWidth: column.width
                visible: root.viewModel.sessionName !== ""
                implicitWidth: sessionLine.implicitWidth + 2 * Tokens.space12
                implicitHeight: Math.max(28, sessionLine.implicitHeight + Tokens.space8)
                radius: Math.min(14, height / 2)
                color: Tokens.sgGlass
                border {
                    width: 1
                    color: Tokens.sgGlassBorder
                }

                RowLayout {
                    id: sessionLine

                    anchors.fill: parent
                    anchors.leftMargin: Tokens.space12
                    anchors.rightMargin: Tokens.space12
                    spacing: Tokens.space8

                    SGIcon {
                        symbol: "clock"
                        size: 12
                        color: Tokens.sgTextSecondary
                    }
                    SGText {
                        style: Styles.BodySmall
                        color: Tokens.sgTextSecondary
                        text: root.viewModel.sessionName
                    }
                }
            }
            ColumnLayout {
                visible: root.viewModel.hasBudget
                spacing: Tokens.space8

                SGProgressBar {
                    Layout.fillWidth: true
                    value: root.viewModel.budgetShare
                    Accessible.role: Accessible.ProgressBar
                    Accessible.name: root.viewModel.budgetText
                }
                SGText {
                    style: Styles.BodySmall
                    color: Tokens.sgTextSecondary
                    horizontalAlignment: Text.AlignHCenter
                    text: root.viewModel.budgetText
                }
            }
            ColumnLayout {
                spacing: Tokens.space12

                SGGradientButton {
                    isFullWidth: true
                    title: root.viewModel.primaryTitle
                    onClicked: root.viewModel.dismiss()
                }
                SGButton {
                    visible: root.viewModel.canOpenTasks
                    isFullWidth: true
                    style: Styles.Secondary
                    icon.name: "checkmark.circle"
                    title: L.text("blockScreen.completeTasksFirst")
                    onClicked: root.viewModel.openTasks()
                }
                ColumnLayout {
                    visible: root.viewModel.canContinue
                    spacing: Tokens.space4

                    SGButton {
                        Layout.alignment: Qt.AlignHCenter
                        style: Styles.Ghost
                        title: L.text("blockScreen.continue")
                        onClicked: root.viewModel.askToContinue()
                    }
                    SGText {
                        style: Styles.BodySmall
                        horizontalAlignment: Text.AlignHCenter
                        color: root.viewModel.isNoticeOfGuardian ? Tokens.sgWarning : Tokens.sgDanger
                        text: root.viewModel.notice
                    }
                }
            }
        }
    }

    SGConfirmation {
        radius: root.radius
        visible: root.viewModel.showConfirm
        title: L.text("common.confirm")
        message: L.text("blockScreenMotivation.streakBreakWarning")
        confirmTitle: L.text("blockScreen.continue")
        onCancelled: root.viewModel.cancelConfirm()
        onConfirmed: root.viewModel.continueAnyway()
    }
}
