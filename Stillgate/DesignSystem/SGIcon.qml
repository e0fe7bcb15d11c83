import QtQuick
import QtQuick.Controls.impl
import Stillgate.DesignSystem

// An icon of Resources/icons/symbols.txt, in one colour. It says nothing to a screen reader: what it stands beside does.
IconImage {
    required property string symbol
    property int size: 16

    source: symbol === "" ? "" : "qrc:/stillgate/icons/" + symbol + ".svg"
    sourceSize {
        width: size
        height: size
    }
    color: Tokens.sgTextPrimary
    width: size
    height: size
    Accessible.ignored: true
}
