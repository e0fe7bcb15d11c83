import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// One choice of several that are told by pictures and words. It is one stop of the Tab key, and the arrow keys choose:
// the next one, or the one in the next line.
//
// `choices` is a list of Choice. `selected` belongs to the owner: `onActivated` gives the index that the user wants.
GridLayout {
    id: root

    required property string title // for those who don't see what it stands below
    required property var choices
    required property int selected

    signal activated(int index)

    readonly property int tabStop: Math.max(0, selected)

    function choose(index: int) {
        if (index < 0 || index >= choices.length)
            return;
        activated(index);
        cards.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
    }

    columnSpacing: Tokens.space8
    rowSpacing: Tokens.space8
    Layout.fillWidth: true
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Repeater {
        id: cards

        model: root.choices

        // qmllint disable unqualified
        SGChoiceCard {
            columns: root.columns
            isTabStop: index === root.tabStop
            isSelected: index === root.selected
            onChosen: newIndex => root.choose(newIndex)
        }
        // qmllint enable unqualified
    }
}
