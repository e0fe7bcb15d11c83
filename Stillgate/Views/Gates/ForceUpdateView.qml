import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Gates

AuroraPage {
    id: page

    required property ForceUpdateViewModel viewModel

    onConfirmed: viewModel.download()
    title: L.text("extension.popup.updateRequired")
    paragraph: viewModel.message
    hero: illustration.status === Image.Ready ? picture : symbol

    Image {
        id: illustration

        visible: false
        source: page.viewModel.illustration
        // Both are one picture in memory, with as many pixels as are shown.
        sourceSize {
            width: 240 * Screen.devicePixelRatio
            height: 180 * Screen.devicePixelRatio
        }
    }
    Component {
        id: picture

        // qmllint disable unqualified
        Image {
            width: 240
            height: 180
            source: illustration.source
            sourceSize {
                width: illustration.sourceSize.width
                height: illustration.sourceSize.height
            }
            Accessible.ignored: true
        }
        // qmllint enable unqualified
    }
    Component {
        id: symbol

        HeroSymbol {
            symbol: "arrow.down.app.fill"
            from: Tokens.sgAccent
            to: Tokens.sgGradientEnd
        }
    }

    // One below the other where there is no room for two long versions.
    GridLayout {
        id: versions

        readonly property real naturalWidth: current.implicitWidth + arrow.width + needed.implicitWidth + 2 * columnSpacing
        readonly property bool isOneLine: naturalWidth <= parent.width

        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: !isOneLine
        columns: isOneLine ? 3 : 1
        columnSpacing: Tokens.space12
        rowSpacing: Tokens.space8

        VersionPill {
            id: current

            Layout.alignment: Qt.AlignHCenter
            label: L.text("common.version")
            version: page.viewModel.currentVersion
            versionColor: Tokens.sgDanger
        }
        SGIcon {
            id: arrow

            Layout.alignment: Qt.AlignCenter
            rotation: versions.isOneLine ? 0 : 90
            symbol: "arrow.right"
            size: 16
            color: Tokens.sgTextMuted
        }
        VersionPill {
            id: needed

            Layout.alignment: Qt.AlignHCenter
            label: L.text("extension.popup.updateRequired")
            version: page.viewModel.minVersion
            versionColor: Tokens.sgSuccess
        }
    }
    SGGradientButton {
        isFullWidth: true
        title: L.text("extension.popup.downloadUpdate")
        icon.name: "arrow.down.circle.fill"
        onClicked: page.viewModel.download()
    }
}
