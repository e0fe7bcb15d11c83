import QtQuick
import Stillgate.DesignSystem

// A figure beside its symbol. Its title is for those who don't see it.
Row {
    id: root

    required property string symbol
    required property string title
    required property string value
    required property color color

    spacing: Tokens.space4
    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + value

    SGIcon {
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.symbol
        size: 14
        color: root.color
    }
    SGText {
        style: Styles.BodySmall
        text: root.value
        color: root.color
        Accessible.ignored: true
    }
}
