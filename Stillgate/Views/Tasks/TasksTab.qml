import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Tasks

TabList {
    id: page

    required property TasksViewModel viewModel

    // While they are loaded again there are no rows, and then they are where they were.
    readonly property bool isLoading: viewModel.isLoading
    property real contentYBefore

    onIsLoadingChanged: {
        if (isLoading) {
            contentYBefore = contentY;
        } else {
            forceLayout();
            scrollTo(contentYBefore);
        }
    }

    title: L.text("tasks.title")
    model: viewModel.tasks
    below: viewModel.isLoading ? skeleton : viewModel.emptySymbol !== "" ? nothing : null
    sheet: viewModel.createSheet ? createSheet : null

    // qmllint disable unqualified
    actions: SGButton {
        isCompact: true
        icon.name: "plus"
        title: L.text("tasks.createTask")
        onClicked: page.viewModel.openCreateSheet()
    }
    above: ColumnLayout {
        spacing: Tokens.space16

        SGPillPicker {
            title: page.title
            options: page.viewModel.segmentTitles
            selected: page.viewModel.selectedSegment
            onActivated: index => page.viewModel.selectedSegment = index
        }
        SGChipPicker {
            Layout.bottomMargin: Tokens.space16
            title: L.text("tasks.filter")
            options: page.viewModel.filterTitles
            symbols: page.viewModel.filterSymbols
            selected: page.viewModel.selectedFilter
            onActivated: index => page.viewModel.selectedFilter = index
        }
    }
    delegate: TaskRow {
        x: page.columnX
        width: page.columnWidth
        onCompleted: page.viewModel.complete(row.id)
        onApproved: page.viewModel.approve(row.id)
        onRejected: page.viewModel.reject(row.id)
    }

    Component {
        id: skeleton

        TasksSkeletonView {}
    }
    Component {
        id: nothing

        ColumnLayout {
            EmptyState {
                symbol: page.viewModel.emptySymbol
                title: L.text("tasks.noTasks")
            }
        }
    }
    Component {
        id: createSheet

        CreateTaskSheet {
            form: page.viewModel.createSheet
            onCancelled: page.viewModel.closeCreateSheet()
        }
    }
    // qmllint enable unqualified
}
