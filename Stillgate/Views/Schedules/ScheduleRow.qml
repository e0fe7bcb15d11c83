import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Schedules

// A schedule in brief. Nothing can be done with it.
RowLayout {
    id: root

    required property var row

    spacing: Tokens.space12

    SGIcon {
        symbol: "clock"
        color: Tokens.sgAccent
    }
    ColumnLayout {
        spacing: 2

        SGText {
            text: root.row.name
            font.weight: Font.Medium
        }
        SGText {
            visible: text !== ""
            style: Styles.BodySmall
            text: root.row.subtitle
        }
    }
    ScheduleStatus {
        row: root.row
    }
}
