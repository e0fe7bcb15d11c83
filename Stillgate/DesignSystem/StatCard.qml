import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A figure with what it is.
SGGlassCard {
    id: root

    required property string title
    required property string value
    required property string symbol
    required property color color

    // What keeps the value in one line.
    readonly property real naturalWidth: Math.ceil(figure.implicitWidth) + 2 * padding

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + value
    Layout.fillHeight: true
    Layout.preferredWidth: 120

    SGIcon {
        symbol: root.symbol
        size: 18
        color: root.color
    }
    SGText {
        id: figure

        style: Styles.Figure
        text: root.value
        Accessible.ignored: true
    }
    SGText {
        Layout.topMargin: -Tokens.space8
        style: Styles.Caption
        text: root.title
        Accessible.ignored: true
    }
}
