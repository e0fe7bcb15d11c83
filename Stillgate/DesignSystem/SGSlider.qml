import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// A number out of a range, in steps. `number` belongs to the owner: `onMovedTo` gives the one that the user wants.
T.Slider {
    id: root

    required property string title
    required property real number

    signal movedTo(real newNumber)

    value: number
    snapMode: T.Slider.SnapAlways
    implicitWidth: 200
    implicitHeight: 28
    leftPadding: 10
    rightPadding: 10
    Layout.fillWidth: true
    Accessible.name: title

    onMoved: {
        movedTo(value);
        value = Qt.binding(() => number);
    }

    background: Rectangle {
        x: root.leftPadding
        y: (root.height - height) / 2
        width: root.availableWidth
        height: 6
        radius: 3
        color: Tokens.sgBgElevated

        Rectangle {
            width: root.visualPosition * parent.width
            height: parent.height
            radius: parent.radius
            color: Tokens.sgAccent
        }
    }
    handle: Rectangle {
        x: root.leftPadding + root.visualPosition * root.availableWidth - width / 2
        y: (root.height - height) / 2
        width: 20
        height: 20
        radius: 10
        color: root.pressed ? Tokens.sgTextSecondary : Tokens.white

        SGFocusRing {
            targetRadius: 10
            visible: root.visualFocus
        }
    }
}
