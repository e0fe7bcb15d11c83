import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Streak

// This week at a glance.
SGGlassCard {
    id: root

    required property var week

    SGSectionLabel {
        title: L.text("screenTimeAnalytics.week")
    }
    RowLayout {
        spacing: Tokens.space4

        Repeater {
            model: root.week

            ColumnLayout {
                id: day

                required property streakDay modelData

                spacing: Tokens.space8
                Layout.fillWidth: true
                Layout.preferredWidth: 1 // all the same
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.spoken

                SGText {
                    horizontalAlignment: Text.AlignHCenter
                    style: Styles.Caption
                    text: day.modelData.letter
                    Accessible.ignored: true
                }
                Rectangle {
                    Layout.alignment: Qt.AlignHCenter
                    implicitWidth: 32
                    implicitHeight: 32
                    radius: 16
                    color: day.modelData.isDone ? Tokens.sgSuccess : day.modelData.isToday ? Tokens.clear : Tokens.sgGlass
                    border {
                        width: day.modelData.isToday ? 2 : 0
                        color: Tokens.sgSuccess
                    }

                    SGIcon {
                        anchors.centerIn: parent
                        visible: day.modelData.isDone
                        symbol: "checkmark"
                        color: Tokens.black
                    }
                }
            }
        }
    }
}
