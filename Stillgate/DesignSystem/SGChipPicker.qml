import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// One choice of several, in as many lines as they need. It is one stop of the Tab key, and the arrow keys choose.
//
// `selected` only says what is chosen, and belongs to the owner: `onActivated` gives the index that the user wants.
Flow {
    id: root

    required property string title // for those who don't see what it stands below
    required property list<string> options
    required property int selected
    property list<string> symbols
    property bool showsGlyphs: false // the options are emoji

    signal activated(int index)

    readonly property int tabStop: Math.max(0, Math.min(selected, options.length - 1))

    function choose(index: int) {
        if (index < 0 || index >= options.length)
            return;
        activated(index);
        chips.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: Tokens.space8
    Layout.fillWidth: true
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Repeater {
        id: chips

        model: root.options

        // qmllint disable unqualified
        SGChip {
            symbol: root.symbols[index] ?? ""
            isGlyph: root.showsGlyphs
            isTabStop: index === root.tabStop
            isSelected: index === root.selected
            onChosen: newIndex => root.choose(newIndex)
        }
        // qmllint enable unqualified
    }
}
