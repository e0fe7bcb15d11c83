import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// A line of text to be written. `title` is for those who don't see it; the placeholder may be an example.
T.TextField {
    id: root

    required property string title
    property string symbol

    readonly property var face: Styles.text(Styles.Body)

    implicitWidth: 240
    implicitHeight: 40
    leftPadding: symbol === "" ? Tokens.space12 : Tokens.space12 + 16 + Tokens.space8
    rightPadding: Tokens.space12
    verticalAlignment: TextInput.AlignVCenter
    color: Tokens.sgTextPrimary
    selectionColor: Tokens.sgAccent
    selectedTextColor: Tokens.black
    selectByMouse: true
    font {
        pixelSize: face.size
        weight: face.weight
    }
    Layout.fillWidth: true
    Accessible.name: title

    background: Rectangle {
        radius: Tokens.radiusMedium
        color: Tokens.sgBgSecondary
        border {
            width: root.activeFocus ? 2 : 1
            color: root.activeFocus ? Tokens.sgAccent : Tokens.sgBorder
        }
    }

    SGIcon {
        x: Tokens.space12
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.symbol
        visible: root.symbol !== ""
        color: Tokens.sgTextSecondary
    }
    SGText {
        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: root.text === "" && root.preeditText === ""
        text: root.placeholderText
        color: Tokens.sgTextMuted
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
