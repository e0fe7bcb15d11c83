import QtQuick
import Stillgate.DesignSystem

// The picture of an app, or the symbol of any app where it has none.
Item {
    id: root

    required property string source

    implicitWidth: 24
    implicitHeight: 24

    Image {
        id: picture

        anchors.fill: parent
        source: root.source
        sourceSize {
            width: 24
            height: 24
        }
        visible: status === Image.Ready
        Accessible.ignored: true
    }
    SGIcon {
        anchors.centerIn: parent
        visible: !picture.visible
        symbol: "app.fill"
        size: 20
        color: Tokens.sgTextSecondary
    }
}
