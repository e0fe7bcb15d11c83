import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// What shows a value, and what chooses one.
ColumnLayout {
    spacing: 0

    Section {
        title: "Progress bar"

        Repeater {
            model: [0, 0.02, 0.5, 0.8, 0.81, 1, 1.5]

            RowLayout {
                id: bars

                required property real modelData

                spacing: Tokens.space16

                SGText {
                    style: Styles.BodySmall
                    text: bars.modelData
                    Layout.preferredWidth: 40
                    Layout.fillWidth: false
                }

                SGProgressBar {
                    value: bars.modelData
                    Layout.fillWidth: true
                }

                SGProgressBar {
                    value: bars.modelData
                    showWarning: true
                    gradient: [Tokens.sgAccent, Tokens.sgAurora2]
                    implicitHeight: 6
                    Layout.fillWidth: true
                }

                SGProgressBar {
                    value: bars.modelData
                    gradient: [Tokens.sgSuccess, Tokens.sgWarning, Tokens.sgDanger]
                    implicitHeight: 16
                    Layout.fillWidth: true
                }
            }
        }
    }

    Section {
        title: "Categories"

        RowLayout {
            spacing: Tokens.space24

            Repeater {
                model: ["social_media", "gaming", "streaming", "gambling", "shopping", "adult", "news", "weather"]

                ColumnLayout {
                    id: category

                    required property string modelData

                    spacing: Tokens.space8

                    CategoryIcon {
                        category: category.modelData
                        size: 28
                    }

                    SGText {
                        style: Styles.Hint
                        text: category.modelData
                    }
                }
            }
        }
    }

    Section {
        title: "Policies"

        RowLayout {
            spacing: Tokens.space12

            Repeater {
                model: ["flexible", "permanent", "cooldown", "group_approval", "until_the_moon_is_full"]

                PolicyBadge {
                    required property string modelData

                    policy: modelData
                }
            }
        }
    }

    Section {
        title: "Choices"

        SGPillPicker {
            title: "Period"
            options: ["Week", "Month"]
            selected: 0
            onActivated: index => selected = index
        }

        SGPillPicker {
            title: "Görevler"
            options: ["Bütün görevler", "Bekleyen", "Onay bekleyenler", "Tamamlanan"]
            selected: 2
            onActivated: index => selected = index
        }

        SGPillPicker {
            title: "Bugünün görevleri"
            options: ["Bugün yapılacak bütün görevler", "Onay bekleyen görevler", "Tamamlanan"]
            selected: 1
            onActivated: index => selected = index
            Layout.maximumWidth: 320
        }

        SGPillPicker {
            title: "Nothing"
            options: ["None", "is", "selected"]
            selected: -1
            enabled: false
            opacity: 0.5
        }

        SGDaySelector {
            title: "Days"
            dayLabels: ["M", "T", "W", "T", "F", "S", "S"]
            selectedDays: [0, 1, 2, 3, 4]
            onToggled: day => selectedDays = selectedDays.includes(day) ? selectedDays.filter(each => each !== day) : selectedDays.concat([day])
        }

        SGDaySelector {
            title: "Günler"
            dayLabels: ["Pt", "Sa", "Ça", "Pe", "Cu", "Ct", "Pz"]
            selectedDays: [5, 6]
        }
    }
}
