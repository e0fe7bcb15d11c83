import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Group

// A member, with three figures.
SGGlassCard {
    id: card

    required property groupMember modelData

    RowLayout {
        spacing: Tokens.space12

        Rectangle {
            implicitWidth: 40
            implicitHeight: 40
            radius: 20
            color: Tokens.withOpacity(Tokens.sgAccent, 0.2)

            SGText {
                anchors.centerIn: parent
                style: Styles.ButtonTitle
                text: card.modelData.initial
                color: Tokens.sgAccent
                Accessible.ignored: true
            }
        }
        ColumnLayout {
            spacing: 2

            SGText {
                text: card.modelData.name
                font.weight: Font.Medium
            }
            SGText {
                style: Styles.BodySmall
                text: card.modelData.role
            }
        }
    }
    Flow {
        spacing: Tokens.space16
        Layout.fillWidth: true

        GroupStatItem {
            symbol: "flame"
            title: L.text("streak.title")
            value: card.modelData.streak
            color: Tokens.sgStreakFire
        }
        GroupStatItem {
            symbol: "lock.shield"
            title: L.text("desktop.menuBar.activeRules")
            value: card.modelData.activeRules
            color: Tokens.sgAccent
        }
        GroupStatItem {
            symbol: "iphone"
            title: L.text("screenTimeAnalytics.title")
            value: card.modelData.screenTime
            color: Tokens.sgTextSecondary
        }
    }
}
