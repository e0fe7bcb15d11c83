import QtQuick
import QtQuick.Templates as T
import Stillgate.DesignSystem

// `value` is a share of 1, and all that is above it is 1. With `showWarning` a bar that is nearly full changes colour.
T.ProgressBar {
    id: root

    property list<color> gradient: [Tokens.sgGradientStart, Tokens.sgGradientEnd]
    property bool showWarning: false

    implicitWidth: 200
    implicitHeight: 8

    contentItem: ProgressCapsule {
        fraction: root.position
        gradient: Styles.progressGradient(root.value, root.gradient, root.showWarning)

        Behavior on fraction {
            enabled: !Motion.isReduced

            NumberAnimation {
                duration: 600
                easing.type: Easing.OutCubic
            }
        }
    }
}
