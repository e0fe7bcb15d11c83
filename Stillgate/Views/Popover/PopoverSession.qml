import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Popover

// The day of whoever is signed in: streak, figures, code, budget, and the quick block that runs.
ColumnLayout {
    id: root

    required property PopoverViewModel viewModel

    spacing: Tokens.space12
    Layout.fillWidth: true
    Layout.fillHeight: false // nor does any row: a text that is first laid out without any width leaves its height behind

    RowLayout {
        Layout.fillHeight: false
        spacing: Tokens.space8
        Accessible.role: Accessible.StaticText
        Accessible.name: root.viewModel.streakDays + " " + L.text("streak.dayStreak")

        SGIcon {
            symbol: "flame.fill"
            size: 26
            color: Tokens.sgStreakFire
        }
        SGText {
            Layout.fillWidth: false
            style: Styles.Hero
            text: root.viewModel.streakDays
            Accessible.ignored: true
        }
        SGText {
            text: L.text("streak.dayStreak")
            color: Tokens.sgTextSecondary
            Accessible.ignored: true
        }
    }
    ColumnLayout {
        Layout.fillHeight: false
        spacing: Tokens.space8

        Repeater {
            model: root.viewModel.statuses

            RowLayout {
                id: status

                required property figure modelData

                Layout.fillHeight: false
                spacing: Tokens.space12

                SGIcon {
                    symbol: status.modelData.symbol
                    color: status.modelData.color
                }
                SGText {
                    text: status.modelData.title
                    color: Tokens.sgTextSecondary
                }
                SGText {
                    Layout.fillWidth: false
                    text: status.modelData.value
                    color: status.modelData.color
                    font.weight: Font.Medium
                }
            }
        }
    }
    SGGlassCard {
        visible: root.viewModel.sharingCode !== ""
        padding: Tokens.space12

        RowLayout {
            spacing: Tokens.space8

            SGText {
                style: Styles.BodySmall
                text: L.text("desktop.guardian.yourCode")
            }
            SGText {
                Layout.fillWidth: false
                text: root.viewModel.sharingCode
                font.family: "monospace"
                font.weight: Font.Medium
            }
            SGIconButton {
                title: L.text("common.copy") + ": " + L.text("desktop.guardian.yourCode")
                icon.name: "doc.on.doc"
                onClicked: root.viewModel.copyCode()
            }
        }
        SGButton {
            isCompact: true
            isFullWidth: true
            style: Styles.Secondary
            title: "Copy Invite Link"
            icon.name: "person.badge.plus"
            onClicked: root.viewModel.copyInviteLink()
        }
    }
    SGProgressBar {
        implicitHeight: 4
        visible: root.viewModel.hasBudget
        value: root.viewModel.budgetFraction
        gradient: [Tokens.sgAccent, Tokens.sgAurora2]
        showWarning: true
        Layout.fillWidth: true
        Accessible.name: L.text("desktop.guardian.screenTimeBudget")
    }
    RowLayout {
        Layout.fillHeight: false
        visible: root.viewModel.isOffline
        spacing: Tokens.space8

        SGIcon {
            symbol: "wifi.slash"
            color: Tokens.sgWarning
        }
        SGText {
            style: Styles.BodySmall
            text: L.text("desktop.menuBar.offlineCache")
        }
    }
    SGGlassCard {
        visible: root.viewModel.hasQuickBlock
        padding: Tokens.space12

        RowLayout {
            spacing: Tokens.space12

            SGIcon {
                symbol: "bolt.fill"
                size: 18
                color: Tokens.sgWarning
            }
            ColumnLayout {
                spacing: 0

                SGText {
                    text: L.text("desktop.quickBlock.title")
                    font.weight: Font.Medium
                }
                SGText {
                    style: Styles.BodySmall
                    text: root.viewModel.quickBlockText
                }
            }
            SGButton {
                isCompact: true
                style: Styles.Danger
                title: L.text("desktop.quickBlock.end")
                onClicked: root.viewModel.endQuickBlock()
            }
        }
    }
}
