import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Schedules

// A new schedule. Times are taken as they are typed.
SGSheet {
    id: sheet

    required property CreateScheduleViewModel form

    title: L.text("schedule.newSchedule")
    canConfirm: form.canCreate
    onConfirmed: form.create()

    SGTextField {
        title: L.text("schedule.newSchedule")
        placeholderText: title
        text: sheet.form.name
        onTextEdited: sheet.form.name = text
    }
    SGPillPicker {
        title: L.text("tasks.repeat")
        options: sheet.form.typeTitles
        selected: sheet.form.selectedType
        onActivated: index => sheet.form.chooseType(index)
    }
    SGDaySelector {
        visible: sheet.form.isRecurring
        title: L.text("schedule.recurring")
        dayLabels: sheet.form.dayLabels
        dayTitles: sheet.form.dayTitles
        selectedDays: sheet.form.selectedDays
        onToggled: day => sheet.form.toggleDay(day)
    }
    RowLayout {
        visible: sheet.form.isRecurring
        spacing: Tokens.space12

        ColumnLayout {
            spacing: Tokens.space4

            SGText {
                style: Styles.BodySmall
                text: L.text("schedule.from")
            }
            SGTextField {
                title: L.text("schedule.from")
                placeholderText: "09:00"
                text: sheet.form.startTime
                onTextEdited: sheet.form.startTime = text
            }
        }
        ColumnLayout {
            spacing: Tokens.space4

            SGText {
                style: Styles.BodySmall
                text: L.text("schedule.to")
            }
            SGTextField {
                title: L.text("schedule.to")
                placeholderText: "17:00"
                text: sheet.form.endTime
                onTextEdited: sheet.form.endTime = text
            }
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
            enabled: sheet.form.canCreate
            icon.name: sheet.form.confirmSymbol
            title: sheet.form.confirmTitle
            onClicked: sheet.confirmed()
        }
    ]
}
