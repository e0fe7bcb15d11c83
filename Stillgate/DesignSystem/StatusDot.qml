import QtQuick
import Stillgate.DesignSystem

// A state as a colour; what it stands beside says it in words.
Rectangle {
    implicitWidth: 8
    implicitHeight: 8
    radius: width / 2
    Accessible.ignored: true
}
