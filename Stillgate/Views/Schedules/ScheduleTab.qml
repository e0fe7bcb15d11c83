import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Schedules

TabList {
    id: page

    required property SchedulesViewModel viewModel

    title: L.text("schedule.title")
    model: viewModel.schedules
    below: viewModel.isEmpty ? nothingYet : null
    sheet: viewModel.createSheet ? createSheet : viewModel.asksToDelete ? deletion : null

    // qmllint disable unqualified
    actions: SGButton {
        isCompact: true
        icon.name: "plus"
        title: L.text("schedule.newSchedule")
        onClicked: page.viewModel.openCreateSheet()
    }
    delegate: ScheduleDetailRow {
        x: page.columnX
        width: page.columnWidth
        onDeletionAsked: page.viewModel.askToDelete(row.id)
    }

    Component {
        id: nothingYet

        ColumnLayout {
            EmptyState {
                symbol: "clock"
                title: L.text("schedule.noSchedules")
                explanation: L.text("schedule.noSchedulesDesc")
            }
        }
    }
    Component {
        id: createSheet

        CreateScheduleSheet {
            form: page.viewModel.createSheet
            onCancelled: page.viewModel.closeCreateSheet()
        }
    }
    Component {
        id: deletion

        SGConfirmation {
            title: L.text("blocks.deleteSchedule")
            message: L.text("schedule.noSchedulesDesc")
            confirmTitle: L.text("common.delete")
            onCancelled: page.viewModel.keep()
            onConfirmed: page.viewModel.deleteForGood()
        }
    }
    // qmllint enable unqualified
}
