import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Protection

TabList {
    id: page

    required property ProtectionViewModel viewModel

    title: L.text("desktop.protection.title")
    subtitle: L.text("desktop.protection.subtitle")
    model: viewModel.rules
    sheet: viewModel.createRule ? createRule : viewModel.quickBlock ? quickBlock : viewModel.asksToDelete ? question : null

    // qmllint disable unqualified
    actions: RowLayout {
        spacing: Tokens.space8

        SGButton {
            isCompact: true
            style: Styles.Secondary
            title: L.text("desktop.quickBlock.title")
            icon.name: "bolt.fill"
            onClicked: page.viewModel.openQuickBlock()
        }
        SGButton {
            isCompact: true
            title: L.text("desktop.protection.addRule")
            icon.name: "plus"
            onClicked: page.viewModel.openCreateRule()
        }
    }
    above: ColumnLayout {
        spacing: Tokens.space8

        SGGlassCard {
            RowLayout {
                spacing: Tokens.space12
                Accessible.role: Accessible.Grouping
                Accessible.name: page.viewModel.monitorName

                SGIcon {
                    symbol: "terminal"
                    size: 20
                    color: Tokens.sgTextSecondary
                }
                ColumnLayout {
                    spacing: 2

                    SGText {
                        text: L.text("desktop.protection.processMonitor")
                        font.weight: Font.Medium
                        Accessible.ignored: true
                    }
                    SGText {
                        style: Styles.BodySmall
                        text: page.viewModel.monitorText
                    }
                }
                StatusDot {
                    color: page.viewModel.isMonitoring ? Tokens.sgSuccess : Tokens.sgTextMuted
                }
            }
        }
        SGGlassCard {
            visible: page.viewModel.hasQuickBlock

            RowLayout {
                spacing: Tokens.space12

                SGIcon {
                    symbol: "bolt.fill"
                    size: 20
                    color: Tokens.sgWarning
                }
                ColumnLayout {
                    spacing: 2

                    SGText {
                        text: L.text("desktop.quickBlock.active")
                        font.weight: Font.Medium
                    }
                    SGText {
                        style: Styles.BodySmall
                        text: page.viewModel.quickBlockText
                    }
                }
                SGButton {
                    isCompact: true
                    style: Styles.Danger
                    title: L.text("desktop.quickBlock.end")
                    onClicked: page.viewModel.endQuickBlock()
                }
            }
        }
        Item {
            implicitHeight: Tokens.space8
        }
    }
    below: ColumnLayout {
        EmptyState {
            visible: !page.viewModel.hasRules
            symbol: "shield.slash"
            title: L.text("desktop.protection.noRules")
            explanation: L.text("desktop.protection.noRulesDesc")
        }
    }
    delegate: RuleRow {
        x: page.columnX
        width: page.columnWidth
        onDeleteAsked: ruleId => page.viewModel.askToDelete(ruleId)
    }

    Component {
        id: createRule

        CreateRuleSheet {
            viewModel: page.viewModel.createRule
            onCancelled: page.viewModel.closeSheet()
        }
    }
    Component {
        id: quickBlock

        QuickBlockSheet {
            viewModel: page.viewModel.quickBlock
            onCancelled: page.viewModel.closeSheet()
        }
    }
    Component {
        id: question

        SGConfirmation {
            title: L.text("desktop.protection.deleteRule")
            message: L.text("desktop.protection.deleteRuleDesc")
            confirmTitle: L.text("common.delete")
            onCancelled: page.viewModel.closeSheet()
            onConfirmed: page.viewModel.deleteRule()
        }
    }
    // qmllint enable unqualified
}
