import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// An option of SGPillPicker.
T.RadioButton {
    id: root

    required property string modelData
    required property int index
    required property bool isSelected
    required property bool isTabStop
    property real radius: 16

    signal chosen(int newIndex)

    text: modelData
    checked: isSelected
    activeFocusOnTab: isTabStop || activeFocus // which an item may not lose while it has the focus
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    implicitHeight: Math.max(32, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: 14
    verticalPadding: 6
    Layout.fillWidth: true
    Layout.fillHeight: true

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

    contentItem: SGText {
        style: Styles.BodySmall
        text: root.text
        color: root.isSelected ? Tokens.white : root.hovered ? Tokens.sgTextPrimary : Tokens.sgTextSecondary
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    SGFocusRing {
        targetRadius: root.radius
        anchors.margins: -1
        visible: root.visualFocus
    }
}
