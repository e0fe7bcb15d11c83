import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// An option of SGChoiceGrid: a picture over a title, or, where there is a description, a row that ends in a mark.
T.RadioButton {
    id: root

    required property var modelData
    required property int index
    required property bool isSelected
    required property bool isTabStop
    required property int columns // of the grid

    readonly property bool isRow: modelData.description !== ""
    readonly property color inkColor: isSelected ? Tokens.sgAccent : Tokens.sgTextSecondary

    signal chosen(int newIndex)

    text: modelData.title
    checked: isSelected
    activeFocusOnTab: isTabStop || activeFocus // which an item may not lose while it has the focus
    implicitWidth: 120
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: Tokens.space12
    Layout.fillWidth: true
    Layout.fillHeight: true
    Accessible.description: modelData.description

    // A click checks it by itself; whether it stays checked is for the owner to say.
    onClicked: {
        chosen(index);
        checked = Qt.binding(() => isSelected);
    }
    Keys.onLeftPressed: chosen(index - 1)
    Keys.onUpPressed: chosen(index - columns)
    Keys.onRightPressed: chosen(index + 1)
    Keys.onDownPressed: chosen(index + columns)
    Keys.onReturnPressed: chosen(index)
    Keys.onEnterPressed: chosen(index)
    Accessible.onPressAction: if (root.enabled) root.clicked()
    Accessible.onToggleAction: if (root.enabled) root.clicked()

    background: Rectangle {
        radius: Tokens.radiusMedium
        color: root.isSelected ? Tokens.withOpacity(Tokens.sgAccent, 0.12) : root.hovered ? Tokens.sgGlassHeavy : Tokens.sgGlass
        border {
            width: 1
            color: root.isSelected ? Tokens.sgAccent : Tokens.sgGlassBorder
        }
    }
    contentItem: GridLayout {
        columns: root.isRow ? 3 : 1
        columnSpacing: Tokens.space12
        rowSpacing: Tokens.space8

        Rectangle {
            Layout.alignment: root.isRow ? Qt.AlignVCenter : Qt.AlignHCenter
            implicitWidth: root.modelData.glyph === "" ? 28 : 40
            implicitHeight: implicitWidth
            radius: width / 2
            // Many an emoji is dark.
            color: root.modelData.glyph === "" ? Tokens.clear : Tokens.withOpacity(Tokens.white, 0.16)

            SGIcon {
                anchors.centerIn: parent
                visible: symbol !== ""
                symbol: root.modelData.symbol
                size: 20
                color: root.inkColor
            }
            Text {
                anchors.centerIn: parent
                visible: text !== ""
                text: root.modelData.glyph
                font.pixelSize: 22
                Accessible.ignored: true
            }
        }
        ColumnLayout {
            spacing: 2

            SGText {
                horizontalAlignment: root.isRow ? Text.AlignLeft : Text.AlignHCenter
                text: root.modelData.title
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            SGText {
                visible: root.isRow
                style: Styles.BodySmall
                text: root.modelData.description
                Accessible.ignored: true
            }
        }
        SGIcon {
            visible: root.isRow
            symbol: root.isSelected ? "checkmark.circle.fill" : "circle"
            size: 18
            color: root.inkColor
        }
    }

    SGFocusRing {
        visible: root.visualFocus
    }
}
