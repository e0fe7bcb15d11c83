import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Streak

// A step of the ladder, with a line to the next. What isn't reached yet is dim.
ColumnLayout {
    id: root

    required property milestone modelData
    required property int index
    required property bool isLast

    spacing: Tokens.space12

    RowLayout {
        spacing: Tokens.space16
        opacity: root.modelData.isReached ? 1 : 0.5
        Accessible.role: Accessible.StaticText
        Accessible.name: root.modelData.spoken

        Item {
            implicitWidth: 64
            implicitHeight: 48

            Image {
                id: picture

                anchors.fill: parent
                asynchronous: true // to decode those of all rows takes as long as four frames
                visible: status === Image.Ready
                source: root.modelData.illustration
                sourceSize {
                    width: 64 * Screen.devicePixelRatio
                    height: 48 * Screen.devicePixelRatio
                }
                Accessible.ignored: true
            }
            SGIcon {
                anchors.centerIn: parent
                visible: picture.status === Image.Null || picture.status === Image.Error
                symbol: root.modelData.symbol
                size: 26
                color: root.modelData.color
            }
        }
        ColumnLayout {
            spacing: 2

            SGText {
                text: root.modelData.name
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            SGText {
                style: Styles.BodySmall
                text: root.modelData.description
                Accessible.ignored: true
            }
        }
        SGText {
            Layout.fillWidth: false
            style: Styles.Caption
            text: root.modelData.days
            Accessible.ignored: true
        }
        // Its place is kept, so that what stands left of it is in line.
        SGIcon {
            symbol: "checkmark.circle.fill"
            color: Tokens.sgSuccess
            opacity: root.modelData.isReached ? 1 : 0
        }
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 1
        visible: !root.isLast
        color: Tokens.sgGlassBorder
    }
}
