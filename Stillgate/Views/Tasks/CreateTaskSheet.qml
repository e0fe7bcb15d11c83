import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Tasks

// A new task.
SGSheet {
    id: sheet

    required property CreateTaskViewModel form

    title: L.text("tasks.createTask")
    canConfirm: form.canCreate
    onConfirmed: form.create()

    SGChipPicker {
        showsGlyphs: true
        title: L.text("tasks.emoji")
        options: sheet.form.emojis
        selected: sheet.form.selectedEmoji
        onActivated: index => sheet.form.selectedEmoji = index
    }
    ColumnLayout {
        spacing: Tokens.space8

        SGTextField {
            title: L.text("tasks.taskName")
            placeholderText: title
            text: sheet.form.title
            onTextEdited: sheet.form.title = text
        }
        SGTextField {
            title: L.text("tasks.description")
            placeholderText: title
            text: sheet.form.description
            onTextEdited: sheet.form.description = text
        }
    }
    ColumnLayout {
        spacing: Tokens.space4

        RowLayout {
            spacing: Tokens.space12

            SGText {
                style: Styles.BodySmall
                text: L.text("common.reward")
            }
            SGText {
                Layout.fillWidth: false
                text: sheet.form.rewardText
                font.weight: Font.Medium
            }
        }
        SGSlider {
            title: L.text("common.reward")
            from: 0
            to: 120
            stepSize: 5
            number: sheet.form.rewardMinutes
            onMovedTo: newNumber => sheet.form.rewardMinutes = newNumber
        }
    }
    ColumnLayout {
        spacing: Tokens.space8

        SGText {
            style: Styles.BodySmall
            text: L.text("tasks.repeat")
        }
        SGPillPicker {
            title: L.text("tasks.repeat")
            options: sheet.form.repeatTitles
            selected: sheet.form.selectedRepeat
            onActivated: index => sheet.form.selectedRepeat = index
        }
    }
    SGSwitch {
        icon.name: "camera.fill"
        title: L.text("tasks.proofRequired")
        note: L.text("controller.requiresProof")
        isOn: sheet.form.requiresProof
        onSwitched: isOn => sheet.form.requiresProof = isOn
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
            enabled: sheet.form.canCreate
            title: L.text("schedule.create")
            onClicked: sheet.confirmed()
        }
    ]
}
