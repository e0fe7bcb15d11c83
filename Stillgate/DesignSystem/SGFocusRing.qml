import QtQuick
import Stillgate.DesignSystem

// Shows where the keyboard is, around its parent. Bind `visible` to `visualFocus`: a mouse needs no ring.
Rectangle {
    property real targetRadius: Tokens.radiusMedium

    anchors {
        fill: parent
        margins: -4
    }
    radius: targetRadius + 4
    color: Tokens.clear
    border {
        width: 2
        color: Tokens.sgAccent
    }
}
