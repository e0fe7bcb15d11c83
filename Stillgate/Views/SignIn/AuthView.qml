import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.SignIn

AuroraPage {
    id: page

    required property AuthViewModel viewModel
    readonly property bool isOnScreen: Window.visibility !== Window.Hidden

    title: L.text("desktop.linkDevice.title")
    paragraph: L.text("desktop.linkDevice.subtitle")
    hero: HeroSymbol {
        symbol: "shield.checkered"
        from: Tokens.sgGradientStart
        to: Tokens.sgAurora2
    }

    onConfirmed: viewModel.confirm()
    onIsOnScreenChanged: isOnScreen ? viewModel.appear() : viewModel.disappear()
    Component.onDestruction: viewModel.disappear()

    ColumnLayout {
        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: true
        spacing: Tokens.space12

        SGSpinner {
            Layout.alignment: Qt.AlignHCenter
            visible: page.viewModel.isWaiting
        }
        SGIcon {
            Layout.alignment: Qt.AlignHCenter
            visible: !page.viewModel.isWaiting
            symbol: page.viewModel.symbol
            size: 28
            color: Tokens.sgWarning
        }
        EvenText {
            longestLine: page.paragraphWidth
            text: page.viewModel.message
            Accessible.role: page.viewModel.isWaiting ? Accessible.StaticText : Accessible.AlertMessage
        }
        SGButton {
            Layout.alignment: Qt.AlignHCenter
            visible: !page.viewModel.isWaiting
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
