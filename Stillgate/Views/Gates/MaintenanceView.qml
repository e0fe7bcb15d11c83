import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Gates

AuroraPage {
    id: page

    required property MaintenanceViewModel viewModel

    title: L.text("extension.popup.maintenance")
    paragraph: viewModel.message
    hero: HeroSymbol {
        symbol: "wrench.and.screwdriver.fill"
        from: Tokens.sgWarning
        to: Tokens.sgStreakFire
    }

    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        implicitWidth: status.implicitWidth + 2 * Tokens.space16
        implicitHeight: status.implicitHeight + 2 * Tokens.space8
        radius: height / 2
        color: Tokens.clear
        border.color: Tokens.sgGlassBorder
        border.width: 1

        RowLayout {
            id: status

            anchors.centerIn: parent
            spacing: Tokens.space8

            Rectangle {
                implicitWidth: 16
                implicitHeight: 16
                radius: 8
                color: Tokens.withOpacity(Tokens.sgWarning, 0.4)

                Rectangle {
                    anchors.centerIn: parent
                    width: 8
                    height: 8
                    radius: 4
                    color: Tokens.sgWarning
                }
            }
            SGText {
                style: Styles.Hint
                text: L.text("extension.popup.maintenance")
                color: Tokens.sgTextMuted
            }
        }
    }
}
