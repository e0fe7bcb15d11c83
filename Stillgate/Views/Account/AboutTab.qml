import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Account
import Stillgate.Views.Common

SGScrollPage {
    id: page

    required property AboutViewModel viewModel

    contentWidth: width
    contentHeight: Math.max(height, column.implicitHeight + 2 * Tokens.space32)

    ColumnLayout {
        id: column

        anchors.centerIn: parent
        width: parent.width - 2 * Tokens.space32
        spacing: Tokens.space24

        Image {
            Layout.alignment: Qt.AlignHCenter
            source: "qrc:/stillgate/app-icon/stillgate.svg"
            sourceSize {
                width: 96
                height: 96
            }
            Accessible.ignored: true
        }
        ColumnLayout {
            spacing: Tokens.space4

            SGText {
                horizontalAlignment: Text.AlignHCenter
                style: Styles.Hero
                text: "Stillgate"
                Accessible.role: Accessible.Heading
            }
            SGText {
                horizontalAlignment: Text.AlignHCenter
                text: page.viewModel.versionText
                color: Tokens.sgTextSecondary
            }
        }
        SGButton {
            Layout.alignment: Qt.AlignHCenter
            visible: title !== ""
            style: Styles.Ghost
            icon.name: "globe"
            textColor: Tokens.sgAccent
            title: page.viewModel.webSite
            Accessible.role: Accessible.Link
            onClicked: page.viewModel.openWebSite()
        }
    }
}
