import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A version with what it is.
Rectangle {
    id: pill

    required property string label
    required property string version
    required property color versionColor

    implicitWidth: Math.ceil(texts.implicitWidth) + 2 * Tokens.space16
    implicitHeight: texts.implicitHeight + 2 * Tokens.space12
    radius: Tokens.radiusMedium
    color: Tokens.sgGlass
    border.color: Tokens.sgGlassBorder
    border.width: 1
    Layout.fillWidth: true
    Layout.maximumWidth: implicitWidth

    ColumnLayout {
        id: texts

        anchors.fill: parent
        anchors.margins: Tokens.space12
        anchors.leftMargin: Tokens.space16
        anchors.rightMargin: Tokens.space16
        spacing: Tokens.space4

        SGText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            style: Styles.Hint
            text: pill.label
            color: Tokens.sgTextMuted
        }
        SGText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            font.family: "monospace"
            font.pixelSize: 15
            text: pill.version
            color: pill.versionColor
        }
    }
}
