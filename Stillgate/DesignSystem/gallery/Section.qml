import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

Rectangle {
    id: root

    required property string title
    default property alias content: column.data

    objectName: "section"
    color: Tokens.sgBgPrimary
    implicitHeight: column.implicitHeight + 2 * Tokens.space24
    Layout.fillWidth: true

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: Tokens.space24
        spacing: Tokens.space16

        SGSectionLabel {
            title: root.title
        }
    }
}
