import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.ScreenTime

// The last days as bars: hours above, the day below.
SGGlassCard {
    id: root

    required property string title
    required property var days

    visible: days.length > 0

    SGSectionLabel {
        title: root.title
    }
    Row {
        id: chart

        readonly property real columnWidth: (width - (root.days.length - 1) * spacing) / root.days.length

        spacing: Tokens.space4
        Layout.fillWidth: true

        Repeater {
            model: root.days

            // qmllint disable unqualified
            Column {
                id: day

                required property dayBar modelData

                width: chart.columnWidth
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.day + ": " + modelData.hours

                Item {
                    width: parent.width
                    height: 100 + hours.height

                    SGText {
                        id: hours

                        width: parent.width
                        anchors.bottom: bar.top
                        horizontalAlignment: Text.AlignHCenter
                        style: Styles.Caption
                        lineHeight: 15
                        text: day.modelData.hours
                        Accessible.ignored: true
                    }
                    Rectangle {
                        id: bar

                        anchors.bottom: parent.bottom
                        anchors.horizontalCenter: parent.horizontalCenter
                        width: Math.min(parent.width, 40)
                        height: day.modelData.height
                        radius: Math.min(Tokens.radiusSmall, height / 2)
                        color: Tokens.sgAurora2
                    }
                }
                SGText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    style: Styles.Caption
                    lineHeight: 15
                    text: day.modelData.day
                    Accessible.ignored: true
                }
            }
            // qmllint enable unqualified
        }
    }
}
