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

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Tokens.space16
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

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: panel.viewModel.isAuthenticated
            spacing: Tokens.space16

            Item {
                Layout.fillHeight: true
            }
            HeroSymbol {
                Layout.alignment: Qt.AlignHCenter
                symbol: "shield.checkered"
                from: panel.viewModel.isProtected ? Tokens.sgGradientStart : Tokens.sgDanger
                to: panel.viewModel.isProtected ? Tokens.sgAurora2 : Tokens.sgWarning
            }
            SGText {
                horizontalAlignment: Text.AlignHCenter
                style: Styles.Title
                text: panel.viewModel.statusText
            }
            RowLayout {
                Layout.alignment: Qt.AlignHCenter
                Layout.fillWidth: false
                visible: panel.viewModel.isOffline
                spacing: Tokens.space8

                SGIcon {
                    symbol: "wifi.slash"
                    color: Tokens.sgWarning
                }
                SGText {
                    Layout.fillWidth: false
                    style: Styles.BodySmall
                    text: L.text("desktop.menuBar.offlineCache")
                    color: Tokens.sgTextSecondary
                }
            }
            Item {
                Layout.fillHeight: true
            }
        }

        // While it isn't known yet whether there is a session.
        Item {
            Layout.fillHeight: true
            visible: !panel.viewModel.offersSignIn && !panel.viewModel.isAuthenticated
        }

        // The rows stand out by their padding, so that their symbols are below the title.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: false
            Layout.leftMargin: -Tokens.space8
            Layout.rightMargin: -Tokens.space8
            spacing: Tokens.space4

            PopoverRow {
                visible: panel.viewModel.isAuthenticated
                label: L.text("controller.refresh")
                icon.name: "arrow.clockwise"
                keyHint: "Ctrl+R"
                onClicked: panel.viewModel.refresh()
            }
            PopoverRow {
                label: L.text("desktop.menuBar.quitApp")
                icon.name: "power"
                isDanger: true
                onClicked: panel.viewModel.quit()
            }
        }
    }
}
