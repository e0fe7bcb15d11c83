import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A version with what it is.
Rectangle {
    id: pill

    required property string label
    required property string version
    required property color versionColor

    implicitWidth: texts.implicitWidth + 2 * Tokens.space16
    implicitHeight: texts.implicitHeight + 2 * Tokens.space12
    radius: Tokens.radiusMedium
    color: Tokens.sgGlass
    border.color: Tokens.sgGlassBorder
    border.width: 1

    ColumnLayout {
        id: texts

        anchors.fill: parent
        anchors.margins: Tokens.space12
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
