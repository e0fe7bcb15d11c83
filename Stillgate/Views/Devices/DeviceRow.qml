import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization

// A device, and whether it is in use.
SGGlassCard {
    id: card

    required property var row

    RowLayout {
        spacing: Tokens.space12

        SGIcon {
            symbol: card.row.symbol
            size: 22
            color: Tokens.sgAccent
        }
        ColumnLayout {
            spacing: 2

            Flow {
                spacing: Tokens.space8
                Layout.fillWidth: true

                SGText {
                    width: Math.min(implicitWidth, parent.width)
                    text: card.row.name
                    font.weight: Font.Medium
                }
                SGText {
                    visible: card.row.isOwnPlatform
                    style: Styles.Caption
                    text: L.text("devices.thisDevice")
                    color: Tokens.sgAccent
                }
            }
            SGText {
                style: Styles.BodySmall
                text: card.row.platform
            }
        }
        StatusDot {
            implicitWidth: 6
            implicitHeight: 6
            color: card.row.isActive ? Tokens.sgSuccess : Tokens.sgTextMuted
        }
        SGText {
            Layout.fillWidth: false
            style: Styles.Caption
            text: card.row.stateText
        }
    }
}
