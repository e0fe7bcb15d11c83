import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Account
import Stillgate.Views.Common

TabPage {
    id: page

    required property AccountViewModel viewModel

    title: L.text("account.title")
    sheet: viewModel.showDeleteConfirm ? question : null

    SGGlassCard {
        RowLayout {
            spacing: Tokens.space12

            SGIcon {
                symbol: "person.circle"
                size: 22
                color: Tokens.sgAccent
            }
            SGText {
                text: page.viewModel.user
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            }
        }
    }
    SGText {
        visible: text !== ""
        text: page.viewModel.errorMessage
        color: Tokens.sgDanger
        Accessible.role: Accessible.AlertMessage
    }
    ColumnLayout {
        spacing: Tokens.space8
        Layout.maximumWidth: 280

        SGButton {
            isFullWidth: true
            style: Styles.Secondary
            icon.name: "square.and.arrow.up"
            title: page.viewModel.exportTitle
            enabled: !page.viewModel.isExporting
            onClicked: page.viewModel.exportData()
        }
        SGButton {
            isFullWidth: true
            style: Styles.Danger
            icon.name: "rectangle.portrait.and.arrow.right"
            title: L.text("settings.signOut")
            onClicked: page.viewModel.signOut()
        }
    }
    SGGlassCard {
        SGText {
            style: Styles.ButtonTitle
            text: L.text("account.dangerZone")
            color: Tokens.sgDanger
            Accessible.role: Accessible.Heading
        }
        SGText {
            text: L.text("account.deleteAccountMsg")
            color: Tokens.sgTextMuted
        }
        SGButton {
            style: Styles.Danger
            icon.name: "trash"
            title: page.viewModel.deleteTitle
            enabled: !page.viewModel.isDeleting
            onClicked: page.viewModel.askToDelete()
        }
    }

    Component {
        id: question

        // qmllint disable unqualified
        SGConfirmation {
            title: L.text("account.deleteAccountConfirm")
            message: L.text("account.deleteAccountIrreversible")
            confirmTitle: L.text("common.delete")
            onCancelled: page.viewModel.cancelDelete()
            onConfirmed: page.viewModel.deleteAccount()
        }
        // qmllint enable unqualified
    }
}
