import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.ScreenTime

TabPage {
    id: page

    required property ScreenTimeViewModel viewModel

    title: L.text("screenTimeAnalytics.title")
    // qmllint disable unqualified
    actions: SGPillPicker {
        title: page.title
        options: page.viewModel.periods
        selected: page.viewModel.selectedPeriod
        onActivated: index => page.viewModel.select(index)
    }
    // qmllint enable unqualified

    ScreenTimeSkeletonView {
        Layout.fillWidth: true
        visible: page.viewModel.isLoading
    }
    EmptyState {
        visible: !page.viewModel.isLoading && !page.viewModel.hasReport
        symbol: "chart.bar"
        title: L.text("mobile.noScreenTime")
    }
    ColumnLayout {
        visible: page.viewModel.hasReport
        spacing: Tokens.space24

        FigureRow {
            figures: page.viewModel.figures
        }
        UsageChart {
            title: L.text("screenTimeAnalytics.avgDaily")
            days: page.viewModel.days
        }
        UsageShares {
            title: L.text("screenTimeAnalytics.byCategory")
            shares: page.viewModel.categories
            showsCategories: true
        }
        UsageShares {
            title: L.text("screenTimeAnalytics.mostUsed")
            shares: page.viewModel.apps
        }
    }
}
