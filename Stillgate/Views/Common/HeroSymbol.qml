import QtQuick
import Stillgate.DesignSystem
import Stillgate.Views.Common

// The large symbol that a window opens with, on a soft halo of its first colour.
Rectangle {
    id: hero

    required property string symbol
    required property color from
    required property color to

    implicitWidth: 96
    implicitHeight: 96
    radius: width / 2
    color: Tokens.withOpacity(from, 0.1)

    GradientSymbol {
        anchors.centerIn: parent
        width: 44
        height: 44
        symbol: hero.symbol
        from: hero.from
        to: hero.to
    }
}
