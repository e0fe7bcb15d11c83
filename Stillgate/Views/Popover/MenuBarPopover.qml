import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Popover

Rectangle {
    id: panel

    required property PopoverViewModel viewModel

    // From the start: texts that are first laid out without any width leave their height behind.
    implicitWidth: 360
    implicitHeight: 480
    color: Tokens.sgBgPrimary
    border.color: Tokens.sgGlassBorder
    border.width: 1

    Keys.onPressed: event => {
        if (event.modifiers & Qt.ControlModifier)
            event.accepted = viewModel.performKey(String.fromCharCode(event.key));
    }

    SGScrollPage {
        id: page

        anchors.fill: parent
        anchors.margins: 1
        contentWidth: width
        contentHeight: Math.max(height, column.implicitHeight + 2 * Tokens.space16)
        clip: interactive

        ColumnLayout {
            id: column

            x: Tokens.space16
            y: Tokens.space16
            width: panel.width - 2 - 2 * x
            height: page.contentHeight - 2 * y
            spacing: Tokens.space16

            RowLayout {
                Layout.fillHeight: false
                spacing: Tokens.space8

                SGText {
                    style: Styles.Title
                    text: "Stillgate"
                    Accessible.role: Accessible.Heading
                }
                Rectangle {
                    implicitWidth: 10
                    implicitHeight: 10
                    radius: 5
                    color: panel.viewModel.isProtected ? Tokens.sgSuccess : Tokens.sgDanger
                    Accessible.role: Accessible.Indicator
                    Accessible.name: panel.viewModel.statusText
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                visible: panel.viewModel.offersSignIn
                spacing: Tokens.space16

                Item {
                    Layout.fillHeight: true
                }
                SGIcon {
                    Layout.alignment: Qt.AlignHCenter
                    symbol: "person.crop.circle.badge.questionmark"
                    size: 48
                    color: Tokens.sgTextSecondary
                }
                SGText {
                    horizontalAlignment: Text.AlignHCenter
                    text: L.text("desktop.menuBar.signInToStart")
                    color: Tokens.sgTextSecondary
                }
                SGButton {
                    Layout.alignment: Qt.AlignHCenter
                    title: L.text("auth.signIn")
                    onClicked: panel.viewModel.signIn()
                }
                Item {
                    Layout.fillHeight: true
                }
            }
            PopoverSession {
                visible: panel.viewModel.isAuthenticated
                viewModel: panel.viewModel
            }

            // While it isn't known yet whether there is a session, and where there is room.
            Item {
                Layout.fillHeight: true
                Layout.topMargin: -Tokens.space16
                visible: !panel.viewModel.offersSignIn
            }

            // The rows stand out by their padding, so that their symbols are below the title.
            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: false
                Layout.leftMargin: -Tokens.space8
                Layout.rightMargin: -Tokens.space8
                spacing: 0

                Repeater {
                    model: panel.viewModel.actions

                    // qmllint disable unqualified
                    PopoverRow {
                        required property popoverAction modelData

                        label: modelData.label
                        icon.name: modelData.symbol
                        keyHint: modelData.keyHint
                        isDanger: modelData.isDanger
                        onClicked: panel.viewModel.perform(modelData.keyHint)
                    }
                    // qmllint enable unqualified
                }
            }
        }
    }
}
