import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// The outline of a row of a list: a picture, a title over a line, and what stands at the end.
RowLayout {
    required property int pictureSize
    required property size accessory

    spacing: Tokens.space12

    SkeletonCircle {
        size: parent.pictureSize
    }

    ColumnLayout {
        spacing: Tokens.space8
        Layout.maximumWidth: 240

        SkeletonLine {
            implicitWidth: 140
        }

        SkeletonLine {
            implicitHeight: 10
        }
    }

    Item {
        Layout.fillWidth: true
    }

    SkeletonRect {
        implicitWidth: parent.accessory.width
        implicitHeight: parent.accessory.height
        radius: height / 2
    }
}
