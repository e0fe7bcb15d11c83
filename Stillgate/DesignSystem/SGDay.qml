import QtQuick
import QtQuick.Templates as T
import Stillgate.DesignSystem

// A day of SGDaySelector.
T.CheckBox {
    id: root

    required property string modelData
    required property int index
    required property bool isSelected
    required property bool isTabStop
    property string title: modelData

    signal chosen
    signal movedTo(int day)

    text: modelData
    checked: isSelected
    activeFocusOnTab: isTabStop || activeFocus // which an item may not lose while it has the focus
    implicitWidth: 36
    implicitHeight: 36

    // A click switches it by itself; whether it stays so is for the owner to say.
    onClicked: {
        chosen();
        checked = Qt.binding(() => isSelected);
    }
    Keys.onLeftPressed: movedTo(index - 1)
    Keys.onRightPressed: movedTo(index + 1)
    Keys.onReturnPressed: event => event.isAutoRepeat || root.chosen()
    Keys.onEnterPressed: event => event.isAutoRepeat || root.chosen()
    Accessible.name: title
    Accessible.onPressAction: if (root.enabled) root.clicked()
    Accessible.onToggleAction: if (root.enabled) root.clicked()

    background: Surface {
        radius: width / 2
        colors: root.isSelected ? [Tokens.white] : root.hovered ? [Tokens.sgGlassHeavy] : [Tokens.sgGlass]
        outline: root.isSelected ? Tokens.clear : Tokens.sgGlassBorder
        outlineWidth: 1
    }

    contentItem: SGText {
        style: Styles.BodySmall
        text: root.text
        color: root.isSelected ? Tokens.black : Tokens.sgTextSecondary
        font.weight: Font.Medium
        wrapMode: Text.NoWrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    SGFocusRing {
        targetRadius: root.width / 2
        visible: root.visualFocus
    }
}
