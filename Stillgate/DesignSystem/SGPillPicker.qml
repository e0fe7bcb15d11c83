import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// One choice of a few. It is one stop of the Tab key, and the arrow keys choose.
//
// `selected` only says what is chosen, and belongs to the owner: `onActivated` gives the index that the user wants.
Item {
    id: root

    required property string title // for those who don't see what it stands below
    required property list<string> options
    required property int selected

    signal activated(int index)

    readonly property real radius: Math.min(height, 40) / 2

    // The option that Tab reaches when none is selected is the first.
    readonly property int tabStop: Math.max(0, Math.min(selected, options.length - 1))

    function choose(index: int) {
        if (index < 0 || index >= options.length)
            return;
        pills.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
        slides = !Motion.isReduced;
        activated(index);
        slides = false;
    }

    // Only a choice of the user's slides; a new width or a value of the owner's doesn't.
    property bool slides: false

    component Slide: NumberAnimation {
        duration: 200
        easing.type: Easing.OutCubic
    }

    // Side by side, or one below the other where there is no room for that: a word is never broken.
    readonly property real naturalWidth: {
        let width = 8 + row.columnSpacing * Math.max(0, pills.count - 1);
        for (let index = 0; index < pills.count; ++index)
            width += pills.itemAt(index)?.implicitWidth ?? 0;
        return width;
    }

    implicitWidth: naturalWidth
    implicitHeight: row.implicitHeight + 8
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Layout.fillWidth: true
    Layout.maximumWidth: naturalWidth

    Surface {
        anchors.fill: parent
        radius: root.radius
        colors: [Tokens.sgGlass]
        outline: Tokens.sgGlassBorder
        outlineWidth: 0.5
    }

    Rectangle {
        readonly property Item pill: pills.count > 0 ? pills.itemAt(root.tabStop) : null

        x: row.x + (pill?.x ?? 0)
        y: row.y + (pill?.y ?? 0)
        width: pill?.width ?? 0
        height: pill?.height ?? 0
        radius: root.radius - 4
        color: Tokens.sgGlassHeavy
        visible: root.selected === root.tabStop

        Behavior on x {
            enabled: root.slides

            Slide {}
        }

        Behavior on y {
            enabled: root.slides

            Slide {}
        }

        Behavior on width {
            enabled: root.slides

            Slide {}
        }
    }

    GridLayout {
        id: row

        anchors.fill: parent
        anchors.margins: 4
        columns: root.width < root.naturalWidth ? 1 : root.options.length
        columnSpacing: Tokens.space4
        rowSpacing: Tokens.space4

        Repeater {
            id: pills

            model: root.options

            // qmllint disable unqualified
            SGPill {
                isTabStop: index === root.tabStop
                isSelected: index === root.selected
                radius: root.radius - 4
                onChosen: newIndex => root.choose(newIndex)
            }
            // qmllint enable unqualified
        }
    }
}
