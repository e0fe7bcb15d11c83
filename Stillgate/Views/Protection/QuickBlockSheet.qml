import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.AppPicker
import Stillgate.Views.Common
import Stillgate.Views.Protection

SGSheet {
    id: sheet

    required property QuickBlockViewModel viewModel

    title: L.text("desktop.quickBlock.title")
    subtitle: L.text("desktop.quickBlock.desc")
    symbol: "bolt.fill"
    widest: 600
    canConfirm: viewModel.canStart
    onConfirmed: viewModel.start()

    SGText {
        text: L.text("desktop.quickBlock.duration")
        font.weight: Font.Medium
    }
    SGChipPicker {
        Layout.topMargin: -Tokens.space8
        title: L.text("desktop.quickBlock.duration")
        options: sheet.viewModel.durations
        selected: sheet.viewModel.selectedDuration
        onActivated: index => sheet.viewModel.selectedDuration = index
    }
    SGPillPicker {
        title: L.text("desktop.createRule.step1Title")
        options: [L.text("desktop.quickBlock.apps"), L.text("desktop.quickBlock.websites")]
        selected: sheet.viewModel.selectedTab
        onActivated: index => sheet.viewModel.selectedTab = index
    }
    AppPicker {
        visible: sheet.viewModel.showsApps
        picker: sheet.viewModel.picker
    }
    ColumnLayout {
        visible: !sheet.viewModel.showsApps
        spacing: Tokens.space12

        SGText {
            text: L.text("desktop.quickBlock.enterDomains")
            font.weight: Font.Medium
        }
        SGTextArea {
            implicitHeight: 160
            title: L.text("desktop.quickBlock.enterDomains")
            placeholderText: L.text("desktop.quickBlock.domainPlaceholder")
            text: sheet.viewModel.domainInput
            onEdited: newText => sheet.viewModel.domainInput = newText
        }
    }

    buttons: [
        Item {
            Layout.fillWidth: true
        },
        SGButton {
            style: Styles.Ghost
            title: L.text("common.cancel")
            onClicked: sheet.cancelled()
        },
        SGButton {
            title: L.text("desktop.quickBlock.title")
            icon.name: "lock.fill"
            enabled: sheet.viewModel.canStart
            onClicked: sheet.viewModel.start()
        }
    ]
}
