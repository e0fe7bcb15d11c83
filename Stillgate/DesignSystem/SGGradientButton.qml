import QtQuick
import Stillgate.DesignSystem

SGButtonBase {
    id: root

    textColor: Tokens.black
    background: Item {
        Glow {
            anchors.fill: parent
            anchors.topMargin: 6
            anchors.bottomMargin: -6
            color: Tokens.withOpacity(Tokens.sgAccent, 0.25)
            radius: Tokens.radiusMedium
            blur: 10
            visible: root.enabled && !root.down
        }

        Surface {
            anchors.fill: parent
            radius: Tokens.radiusMedium
            colors: [Tokens.sgGradientStart, Tokens.sgGradientEnd]
        }

        Rectangle {
            anchors.fill: parent
            radius: Tokens.radiusMedium
            color: root.down ? Tokens.withOpacity(Tokens.black, 0.16) : Tokens.sgGlassHeavy
            visible: root.down || root.showsHover
        }
    }
}
