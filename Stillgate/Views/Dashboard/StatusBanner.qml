import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Dashboard

// Whether the protection is on, and how much of the day is used.
SGGlassCard {
    id: banner

    required property DashboardViewModel viewModel

    RowLayout {
        spacing: Tokens.space12
        Accessible.role: Accessible.Grouping
        Accessible.name: banner.viewModel.statusName

        StatusDot {
            implicitWidth: 10
            implicitHeight: 10
            color: banner.viewModel.isBlockingActive ? Tokens.sgSuccess : Tokens.sgDanger
        }
        SGText {
            text: banner.viewModel.statusText
            font.weight: Font.Medium
        }
        SGText {
            Layout.fillWidth: false
            visible: banner.viewModel.hasLimit
            text: banner.viewModel.budgetText
            color: Tokens.sgTextSecondary
            font.family: "monospace"
        }
    }
}
