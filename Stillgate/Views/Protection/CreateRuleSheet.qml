import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.AppPicker
import Stillgate.Views.Common
import Stillgate.Views.Protection

SGSheet {
    id: sheet

    required property CreateRuleViewModel viewModel
    readonly property int step: viewModel.step

    title: viewModel.title
    subtitle: viewModel.subtitle
    canConfirm: viewModel.canGoOn
    onConfirmed: viewModel.goOn()

    header: RowLayout {
        spacing: Tokens.space8

        Repeater {
            model: 3

            // qmllint disable unqualified
            Rectangle {
                id: segment

                required property int index

                implicitHeight: 4
                radius: 2
                color: sheet.step > segment.index ? Tokens.sgAccent : Tokens.sgBgElevated
                Layout.fillWidth: true
            }
            // qmllint enable unqualified
        }
    }

    // What kind of distraction.
    ColumnLayout {
        visible: sheet.step === 1
        spacing: Tokens.space16

        onVisibleChanged: if (visible)
            sheet.startWithFirstControl()

        SGChoiceGrid {
            columns: width < 440 ? 2 : 4
            title: L.text("desktop.createRule.step1Title")
            choices: sheet.viewModel.categories
            selected: sheet.viewModel.selectedCategory
            onActivated: index => sheet.viewModel.selectedCategory = index
        }
        SGTextField {
            visible: sheet.viewModel.asksForName
            title: L.text("desktop.createRule.step1Title")
            placeholderText: title
            text: sheet.viewModel.customName
            onTextEdited: sheet.viewModel.customName = text
        }
    }

    // What exactly.
    ColumnLayout {
        visible: sheet.step === 2
        spacing: Tokens.space16

        onVisibleChanged: if (visible)
            sheet.startWithFirstControl()

        SGChoiceGrid {
            columns: 2
            title: L.text("desktop.createRule.step2Title")
            choices: sheet.viewModel.blockModes
            selected: sheet.viewModel.blockMode
            onActivated: index => sheet.viewModel.blockMode = index
        }
        AppPicker {
            visible: sheet.viewModel.blocksApps
            picker: sheet.viewModel.picker
        }
        ColumnLayout {
            visible: !sheet.viewModel.blocksApps
            spacing: Tokens.space12

            SGText {
                text: L.text("desktop.quickBlock.enterDomains")
                font.weight: Font.Medium
            }
            SGTextArea {
                implicitHeight: 160
                title: L.text("desktop.quickBlock.enterDomains")
                placeholderText: L.text("desktop.quickBlock.domainPlaceholder")
                text: sheet.viewModel.customDomains
                onEdited: newText => sheet.viewModel.customDomains = newText
            }
        }
    }

    // How firmly.
    ColumnLayout {
        visible: sheet.step === 3
        spacing: Tokens.space16

        onVisibleChanged: if (visible)
            sheet.startWithFirstControl()

        SGChoiceGrid {
            columns: 1
            title: L.text("desktop.createRule.step3Title")
            choices: sheet.viewModel.policies
            selected: sheet.viewModel.selectedPolicy
            onActivated: index => sheet.viewModel.selectedPolicy = index
        }
        ColumnLayout {
            visible: sheet.viewModel.asksForCooldown
            spacing: Tokens.space8

            SGText {
                text: L.text("blockMode.cooldownPeriod")
                font.weight: Font.Medium
            }
            SGChipPicker {
                title: L.text("blockMode.cooldownPeriod")
                options: sheet.viewModel.cooldowns
                selected: sheet.viewModel.selectedCooldown
                onActivated: index => sheet.viewModel.selectedCooldown = index
            }
        }
        SGGlassCard {
            SGSectionLabel {
                title: L.text("common.summary")
            }
            Repeater {
                // A number, so that the rows stay when their texts change: a layout that comes into view at that moment
                // would still have the rows that are gone (Qt 6.4).
                model: sheet.viewModel.summary.length

                // qmllint disable unqualified
                RowLayout {
                    id: line

                    required property int index
                    readonly property choice entry: sheet.viewModel.summary[index]

                    spacing: Tokens.space8

                    SGIcon {
                        symbol: line.entry.symbol
                        size: 14
                        color: Tokens.sgTextSecondary
                    }
                    SGText {
                        text: line.entry.title
                    }
                }
                // qmllint enable unqualified
            }
        }
    }

    buttons: [
        SGButton {
            style: Styles.Ghost
            title: sheet.step === 1 ? L.text("common.cancel") : L.text("common.back")
            onClicked: sheet.step === 1 ? sheet.cancelled() : sheet.viewModel.goBack()
        },
        Item {
            Layout.fillWidth: true
        },
        SGButton {
            visible: sheet.step < 3
            title: L.text("common.next")
            icon.name: "arrow.right"
            enabled: sheet.viewModel.canGoOn
            onClicked: sheet.viewModel.goOn()
        },
        SGButton {
            visible: sheet.step === 3
            title: sheet.viewModel.isCreating ? L.text("common.creating") : L.text("desktop.protection.addRule")
            icon.name: sheet.viewModel.isCreating ? "" : "checkmark"
            enabled: sheet.viewModel.canGoOn
            onClicked: sheet.viewModel.goOn()
        }
    ]
}
