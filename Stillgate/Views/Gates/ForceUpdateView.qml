import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Gates

AuroraPage {
    id: page

    required property ForceUpdateViewModel viewModel

    title: L.text("extension.popup.updateRequired")
    paragraph: viewModel.message
    hero: illustration.status === Image.Ready ? picture : symbol

    Image {
        id: illustration

        visible: false
        source: page.viewModel.illustration
    }
    Component {
        id: picture

        Image {
            source: page.viewModel.illustration
            sourceSize {
                width: 240
                height: 180
            }
            Accessible.ignored: true
        }
    }
    Component {
        id: symbol

        HeroSymbol {
            symbol: "arrow.down.app.fill"
            from: Tokens.sgAccent
            to: Tokens.sgGradientEnd
        }
    }

    RowLayout {
        Layout.alignment: Qt.AlignHCenter
        spacing: Tokens.space12

        VersionPill {
            label: L.text("common.version")
            version: page.viewModel.currentVersion
            versionColor: Tokens.sgDanger
        }
        SGIcon {
            symbol: "arrow.right"
            size: 16
            color: Tokens.sgTextMuted
        }
        VersionPill {
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
