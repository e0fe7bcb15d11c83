import QtQuick
import Stillgate.DesignSystem

// A name among others, such as a site of a rule.
Rectangle {
    id: root

    required property string text

    // The longest that may be; a longer text goes on in the next line.
    property real widest: 320

    implicitWidth: label.width + 2 * Tokens.space8
    implicitHeight: label.height + 2 * Tokens.space4
    radius: Tokens.radiusSmall
    color: Tokens.sgGlass

    SGText {
        id: label

        x: Tokens.space8
        y: Tokens.space4
        width: Math.min(Math.ceil(metrics.advanceWidth(text)) + 1, root.widest - 2 * Tokens.space8)
        style: Styles.BodySmall
        text: root.text
        wrapMode: Text.WrapAnywhere

        FontMetrics {
            id: metrics

            font: label.font
        }
    }
}
