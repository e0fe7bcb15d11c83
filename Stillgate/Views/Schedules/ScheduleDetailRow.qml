import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Schedules

// A schedule, which can be deleted.
SGGlassCard {
    id: card

    required property var row

    signal deletionAsked

    RowLayout {
        spacing: Tokens.space12

        SGIcon {
            symbol: "clock"
            size: 22
            color: Tokens.sgAccent
        }
        ColumnLayout {
            spacing: 2

            SGText {
                text: card.row.name
                font.weight: Font.Medium
            }
            SGText {
                visible: text !== ""
                style: Styles.BodySmall
                text: card.row.subtitle
            }
            SGText {
                visible: text !== ""
                style: Styles.BodySmall
                text: card.row.rulesText
            }
        }
        ScheduleStatus {
            row: card.row
        }
        SGIconButton {
            icon.name: "trash"
            title: L.text("common.delete")
            Accessible.description: card.row.name
            onClicked: card.deletionAsked()
        }
    }
}
