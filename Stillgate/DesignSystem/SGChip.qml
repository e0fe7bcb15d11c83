import QtQuick
import QtQuick.Templates as T
import Stillgate.DesignSystem

// An option of SGChipPicker.
T.RadioButton {
    id: root

    required property string modelData
    required property int index
    required property bool isSelected
    required property bool isTabStop
    property string symbol
    property bool isGlyph: false // its text is an emoji

    readonly property color inkColor: isSelected ? Tokens.sgAccent : Tokens.sgTextSecondary

    signal chosen(int newIndex)

    text: modelData
    checked: isSelected
    activeFocusOnTab: isTabStop || activeFocus // which an item may not lose while it has the focus
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    implicitHeight: 32
    horizontalPadding: isGlyph ? Tokens.space8 : Tokens.space12

    // A click checks it by itself; whether it stays checked is for the owner to say.
    onClicked: {
        chosen(index);
        checked = Qt.binding(() => isSelected);
    }
    Keys.onLeftPressed: chosen(index - 1)
    Keys.onUpPressed: chosen(index - 1)
    Keys.onRightPressed: chosen(index + 1)
    Keys.onDownPressed: chosen(index + 1)
    Keys.onReturnPressed: chosen(index)
    Keys.onEnterPressed: chosen(index)
    Accessible.onPressAction: if (root.enabled) root.clicked()
    Accessible.onToggleAction: if (root.enabled) root.clicked()

    background: Rectangle {
        radius: height / 2
        color: root.isSelected ? Tokens.withOpacity(Tokens.sgAccent, 0.16) : root.hovered ? Tokens.sgGlassHeavy : Tokens.sgGlass
        border {
            width: 1
            color: root.isSelected ? Tokens.sgAccent : Tokens.sgGlassBorder
        }
    }
    contentItem: Row {
        spacing: 6

        SGIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.symbol
            visible: symbol !== ""
            size: 13
            color: root.inkColor
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isGlyph
            text: root.text
            font {
                family: "Noto Color Emoji" // a text font may have it too, in ink
                pixelSize: 18
            }
            Accessible.ignored: true
        }
        SGText {
            anchors.verticalCenter: parent.verticalCenter
            visible: !root.isGlyph
            style: Styles.BodySmall
            text: root.text
            color: root.inkColor
            font.weight: Font.Medium
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
    }

    SGFocusRing {
        targetRadius: 16
        visible: root.visualFocus
    }
}
