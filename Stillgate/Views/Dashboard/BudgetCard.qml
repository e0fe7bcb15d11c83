import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Dashboard

// The minutes of the day: used, earned, and in all.
SGGlassCard {
    id: card

    required property DashboardViewModel viewModel

    RowLayout {
        spacing: Tokens.space12

        SGSectionLabel {
            title: L.text("desktop.guardian.screenTimeBudget")
        }
        SGText {
            Layout.fillWidth: false
            style: Styles.BodySmall
            text: card.viewModel.earnedText
            color: Tokens.sgSuccess
        }
    }
    SGText {
        text: card.viewModel.usedText
    }
    SGProgressBar {
        value: card.viewModel.budgetFraction
        gradient: [Tokens.sgAccent, Tokens.sgAurora2]
        Layout.fillWidth: true
        Accessible.name: L.text("desktop.guardian.screenTimeBudget")
    }
}
