import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Dashboard
import Stillgate.Views.Protection
import Stillgate.Views.Schedules

TabPage {
    id: page

    required property DashboardViewModel viewModel

    title: L.text("nav.dashboard")

    StatusBanner {
        viewModel: page.viewModel
    }
    FigureRow {
        figures: page.viewModel.figures
    }
    BudgetCard {
        visible: page.viewModel.hasLimit
        viewModel: page.viewModel
    }
    TasksCard {
        viewModel: page.viewModel
    }
    ColumnLayout {
        visible: page.viewModel.hasSchedules
        spacing: Tokens.space8

        SGSectionLabel {
            title: L.text("schedule.activeSchedules")
        }
        Repeater {
            model: page.viewModel.schedules

            SGGlassCard {
                id: schedule

                required property var row

                ScheduleRow {
                    row: schedule.row
                }
            }
        }
    }
    ColumnLayout {
        visible: page.viewModel.hasRules
        spacing: Tokens.space8

        SGSectionLabel {
            title: L.text("desktop.protection.title")
        }
        Repeater {
            model: page.viewModel.rules

            RuleRow {
                canBeDeleted: false
            }
        }
    }
}
