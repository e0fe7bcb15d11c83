import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.SignIn

AuroraPage {
    id: page

    required property AuthViewModel viewModel
    readonly property bool isWaiting: viewModel.phase === AuthViewModel.Waiting
    readonly property bool isOnScreen: Window.visibility !== Window.Hidden

    title: L.text("desktop.linkDevice.title")
    paragraph: L.text("desktop.linkDevice.subtitle")
    hero: HeroSymbol {
        symbol: "shield.checkered"
        from: Tokens.sgGradientStart
        to: Tokens.sgAurora2
    }

    onIsOnScreenChanged: isOnScreen ? viewModel.appear() : viewModel.disappear()
    Component.onDestruction: viewModel.disappear()

    ColumnLayout {
        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: true
        spacing: Tokens.space12

        SGSpinner {
            Layout.alignment: Qt.AlignHCenter
            visible: page.isWaiting
        }
        SGIcon {
            Layout.alignment: Qt.AlignHCenter
            visible: !page.isWaiting
            symbol: page.viewModel.phase === AuthViewModel.Expired ? "clock.badge.exclamationmark"
                                                                   : "exclamationmark.triangle"
            size: 28
            color: Tokens.sgWarning
        }
        SGText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: page.viewModel.message
            color: Tokens.sgTextSecondary
            Accessible.role: page.isWaiting ? Accessible.StaticText : Accessible.AlertMessage
        }
        SGButton {
            Layout.alignment: Qt.AlignHCenter
            visible: !page.isWaiting
            title: L.text("desktop.linkDevice.tryAgain")
            icon.name: "arrow.clockwise"
            style: Styles.Secondary
            onClicked: page.viewModel.tryAgain()
        }
    }

    SGGradientButton {
        isFullWidth: true
        title: L.text("desktop.linkDevice.openBrowser")
        icon.name: "safari"
        enabled: page.viewModel.canOpenBrowser
        onClicked: page.viewModel.openBrowser()
    }
}
