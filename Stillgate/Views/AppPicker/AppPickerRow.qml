import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem
import Stillgate.Views.AppPicker

// An app of the list, with the mark of being chosen.
T.CheckDelegate {
    id: root

    required property var row
    required property int index
    required property bool isTabStop

    signal toggledByUser(string bundleId)
    signal movedTo(int newIndex)
    signal gotKeyboard(int index)

    text: row.name
    checked: row.isSelected
    activeFocusOnTab: isTabStop || activeFocus // which an item may not lose while it has the focus
    implicitHeight: Math.max(40, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: Tokens.space8
    verticalPadding: Tokens.space4

    // A click checks it by itself; whether it stays so is for the owner to say.
    onClicked: {
        root.toggledByUser(row.id);
        checked = Qt.binding(() => row.isSelected);
    }
    onActiveFocusChanged: if (activeFocus)
        root.gotKeyboard(index)
    Keys.onUpPressed: root.movedTo(index - 1)
    Keys.onDownPressed: root.movedTo(index + 1)
    Keys.onReturnPressed: event => event.isAutoRepeat || root.clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || root.clicked()
    Accessible.onPressAction: if (root.enabled) root.clicked()
    Accessible.onToggleAction: if (root.enabled) root.clicked()

    background: Rectangle {
        radius: Tokens.radiusSmall
        color: root.down ? Tokens.sgGlassHeavy : root.hovered ? Tokens.sgGlass : Tokens.clear
        border {
            width: root.visualFocus ? 2 : 0
            color: Tokens.sgAccent
        }
    }
    contentItem: RowLayout {
        spacing: Tokens.space12

        AppIcon {
            source: root.row.icon
        }
        SGText {
            text: root.row.name
            Accessible.ignored: true
        }
        SGIcon {
            symbol: root.row.isSelected ? "checkmark.circle.fill" : "circle"
            size: 18
            color: root.row.isSelected ? Tokens.sgAccent : Tokens.sgTextMuted
        }
    }
}
