import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Dashboard

// The first tasks that are to be done, and how many are.
SGGlassCard {
    id: card

    required property DashboardViewModel viewModel

    RowLayout {
        spacing: Tokens.space12

        SGSectionLabel {
            title: L.text("tasks.title")
        }
        SGButton {
            isCompact: true
            style: Styles.Ghost
            title: L.text("common.viewAll")
            onClicked: card.viewModel.viewAllTasks()
        }
    }
    RowLayout {
        visible: !card.viewModel.hasTasks
        spacing: Tokens.space12

        SGIcon {
            symbol: "checkmark.circle"
            size: 20
            color: Tokens.sgTextSecondary
        }
        SGText {
            text: L.text("tasks.noTasks")
            color: Tokens.sgTextSecondary
        }
    }
    Repeater {
        model: card.viewModel.tasks

        DashboardTaskRow {}
    }
    RowLayout {
        visible: card.viewModel.completedTasksText !== ""
        spacing: Tokens.space12

        SGIcon {
            symbol: "checkmark.circle.fill"
            size: 20
            color: Tokens.sgSuccess
        }
        SGText {
            style: Styles.BodySmall
            text: card.viewModel.completedTasksText
        }
    }
}
