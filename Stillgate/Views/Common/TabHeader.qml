import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// The heading of a screen, with its buttons to the right of it, or below where there is no room.
GridLayout {
    id: header

    required property string title
    property string subtitle
    property Component actions: null

    columns: titles.implicitWidth + actionLoader.implicitWidth + Tokens.space16 > width ? 1 : 2
    columnSpacing: Tokens.space16
    rowSpacing: Tokens.space16
    Layout.fillWidth: true

    ColumnLayout {
        id: titles

        spacing: Tokens.space4

        SGText {
            style: Styles.Hero
            text: header.title
            Accessible.role: Accessible.Heading
        }
        SGText {
            visible: header.subtitle !== ""
            text: header.subtitle
            color: Tokens.sgTextSecondary
        }
    }
    Loader {
        id: actionLoader

        Layout.alignment: header.columns === 1 ? Qt.AlignLeft : Qt.AlignTop | Qt.AlignRight
        active: header.actions !== null
        visible: active
        sourceComponent: header.actions
    }
}
