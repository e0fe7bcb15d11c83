import QtQuick
import Stillgate.DesignSystem

// Days to be switched on and off, numbered from 0 as their labels are. It is one stop of the Tab key; the arrow keys
// go from day to day, and Space switches.
//
// `selectedDays` only says what is on, and belongs to the owner: `onToggled` gives the day that the user wants changed.
Row {
    id: root

    required property string title // for those who don't see what it stands below
    required property list<int> selectedDays
    required property list<string> dayLabels
    property list<string> dayTitles // for those who don't see that two labels may be the same
    property int tabStop: 0

    signal toggled(int day)

    function moveTo(day: int) {
        if (day >= 0 && day < dayLabels.length)
            days.itemAt(day).forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: Tokens.space8
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Repeater {
        id: days

        model: root.dayLabels

        // qmllint disable unqualified
        SGDay {
            title: root.dayTitles[index] ?? modelData
            isSelected: root.selectedDays.includes(index)
            isTabStop: index === root.tabStop
            onChosen: root.toggled(index)
            onMovedTo: day => root.moveTo(day)
            onActiveFocusChanged: if (activeFocus)
                root.tabStop = index
        }
        // qmllint enable unqualified
    }
}
