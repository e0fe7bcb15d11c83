import QtQuick
import Stillgate.DesignSystem

// Something is being waited for.
Item {
    id: spinner

    readonly property int dotCount: 8
    readonly property int headDot: Math.floor(phase.value * dotCount) % dotCount

    implicitWidth: 28
    implicitHeight: 28
    Accessible.role: Accessible.ProgressBar
    Accessible.ignored: true

    SteppedPhase {
        id: phase

        item: spinner
        isEnabled: !Motion.isReduced
        duration: 1000
        stepsPerSecond: 8
    }
    Repeater {
        model: spinner.dotCount

        // qmllint disable unqualified
        Rectangle {
            id: dot

            required property int index
            readonly property real angle: 2 * Math.PI * index / spinner.dotCount
            readonly property int age: (spinner.headDot - index + spinner.dotCount) % spinner.dotCount

            x: spinner.width / 2 + Math.sin(angle) * 11 - width / 2
            y: spinner.height / 2 - Math.cos(angle) * 11 - height / 2
            width: 5
            height: 5
            radius: 2.5
            color: Tokens.sgAccent
            opacity: 1 - 0.11 * age
        }
        // qmllint enable unqualified
    }
}
