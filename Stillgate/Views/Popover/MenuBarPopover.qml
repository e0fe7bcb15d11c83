import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Popover

Rectangle {
    id: panel

    required property PopoverViewModel viewModel

    color: Tokens.sgBgPrimary
    border.color: Tokens.sgGlassBorder
    border.width: 1

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Tokens.space16
        spacing: Tokens.space16

        RowLayout {
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
                Accessible.name: panel.viewModel.isProtected ? L.text("common.active") : L.text("common.inactive")
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: !panel.viewModel.isAuthenticated
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
                text: panel.viewModel.isProtected ? L.text("common.active") : L.text("common.inactive")
                color: Tokens.sgTextSecondary
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

        ColumnLayout {
            Layout.fillWidth: true
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
