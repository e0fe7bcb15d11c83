import QtQuick
import Stillgate.DesignSystem

// Glass without content.
Surface {
    radius: Tokens.radiusLarge
    colors: [Tokens.sgGlass]
    outline: Tokens.sgGlassBorder
    outlineWidth: 0.5
}
