import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Streak

TabPage {
    id: page

    required property StreakViewModel viewModel

    title: L.text("streak.title")

    SGGlassCard {
        padding: Tokens.space24

        RowLayout {
            spacing: Tokens.space16
            Accessible.role: Accessible.StaticText
            Accessible.name: count.text + " " + L.text("streak.dayStreak")

            Rectangle {
                implicitWidth: 64
                implicitHeight: 64
                radius: 32
                color: Tokens.withOpacity(Tokens.sgStreakFire, 0.12)

                SGIcon {
                    anchors.centerIn: parent
                    symbol: "flame.fill"
                    size: 30
                    color: Tokens.sgStreakFire
                }
            }
            ColumnLayout {
                spacing: 0

                SGText {
                    id: count

                    style: Styles.Hero
                    text: page.viewModel.dayCount
                    Accessible.ignored: true
                }
                SGText {
                    text: L.text("streak.dayStreak")
                    color: Tokens.sgTextSecondary
                    Accessible.ignored: true
                }
            }
        }
    }
    WeekRow {
        week: page.viewModel.week
    }
    FigureRow {
        figures: page.viewModel.figures
    }
    SGGlassCard {
        SGSectionLabel {
            title: L.text("streak.title")
        }
        Repeater {
            id: ladder

            model: page.viewModel.milestones

            // qmllint disable unqualified
            MilestoneRow {
                isLast: index === ladder.count - 1
            }
            // qmllint enable unqualified
        }
    }
}
