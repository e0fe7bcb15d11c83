import QtQuick
import Stillgate.DesignSystem

SGIcon {
    required property string category
    readonly property var look: Styles.category(category)

    symbol: look.symbol
    color: look.color
}
