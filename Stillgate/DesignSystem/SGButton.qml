import QtQuick
import Stillgate.DesignSystem

SGButtonBase {
    id: root

    property int style: Styles.Primary
    readonly property var colors: Styles.button(style)

    textColor: colors.text
    background: Rectangle {
        radius: Tokens.radiusMedium
        color: root.down ? root.colors.pressed : root.showsHover ? root.colors.hovered : root.colors.background
        border {
            width: 1
            color: root.colors.outline
        }
    }
}
