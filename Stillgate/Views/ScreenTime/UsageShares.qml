import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.ScreenTime

// What a day went to, each with its part of it.
SGGlassCard {
    id: root

    required property string title
    required property var shares
    property bool showsCategories: false

    readonly property real nameWidth: 0.32 * width
    readonly property real minutesWidth: 64

    visible: shares.length > 0

    SGSectionLabel {
        title: root.title
    }
    Repeater {
        model: root.shares

        // qmllint disable unqualified
        Item {
            id: line

            required property usageShare modelData

            implicitHeight: Math.max(icon.visible ? icon.height : 0, name.height)
            Layout.fillWidth: true
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.name + ": " + modelData.minutes

            CategoryIcon {
                id: icon

                anchors.verticalCenter: parent.verticalCenter
                visible: root.showsCategories
                category: line.modelData.category
                size: 28
            }
            SGText {
                id: name

                anchors.verticalCenter: parent.verticalCenter
                x: icon.visible ? icon.width + Tokens.space12 : 0
                width: root.nameWidth - x
                text: line.modelData.name
                Accessible.ignored: true
            }
            SGProgressBar {
                anchors.verticalCenter: parent.verticalCenter
                x: root.nameWidth + Tokens.space12
                width: parent.width - x - root.minutesWidth - Tokens.space12
                height: 6
                gradient: [Tokens.sgAccent, Tokens.sgAurora2]
                value: line.modelData.share
                Accessible.ignored: true
            }
            SGText {
                anchors.verticalCenter: parent.verticalCenter
                anchors.right: parent.right
                width: root.minutesWidth
                horizontalAlignment: Text.AlignRight
                text: line.modelData.minutes
                color: Tokens.sgTextSecondary
                Accessible.ignored: true
            }
        }
        // qmllint enable unqualified
    }
}
