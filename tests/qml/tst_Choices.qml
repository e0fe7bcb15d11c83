import QtQuick
import QtTest
import Stillgate.DesignSystem

Item {
    id: root

    width: 600
    height: 400

    Column {
        anchors.fill: parent

        SGPillPicker {
            id: picker

            property bool isStubborn: false

            title: "Tasks"
            options: ["All", "Pending", "Done"]
            selected: 0
            onActivated: index => selected = isStubborn ? selected : index
        }

        SGDaySelector {
            id: days

            property list<int> toggledDays

            title: "Days"
            dayLabels: ["M", "T", "W"]
            selectedDays: [2]
            onToggled: day => {
                toggledDays.push(day);
                selectedDays = selectedDays.includes(day) ? selectedDays.filter(each => each !== day) : selectedDays.concat([day]);
            }
        }

        SGChoiceGrid {
            id: grid

            title: "Distractions"
            columns: 3
            choices: ["News", "Games", "Chat", "Films", "Music"].map(title => ({
                        title: title,
                        description: "",
                        symbol: "",
                        glyph: ""
                    }))
            selected: 0
            onActivated: index => selected = index
        }

        SGButton {
            id: button

            property int clicks: 0

            title: "Save"
            onClicked: ++clicks
        }

        SGSwitch {
            id: toggle

            title: "Sounds"
            isOn: false
            onSwitched: isSwitchedOn => isOn = isSwitchedOn
        }
    }

    TestCase {
        name: "Choices"
        when: windowShown

        function init() {
            picker.isStubborn = false;
            picker.selected = 0;
            days.selectedDays = [2];
            days.toggledDays = [];
            days.tabStop = 0;
            grid.selected = 0;
            button.clicks = 0;
            focusFirst();
        }

        // The first item that Tab reaches, seen from the last.
        function focusFirst() {
            toggle.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
        }

        function focused() {
            return root.Window.activeFocusItem;
        }

        function test_everyControlIsOneTabStop() {
            compare(focused().text, "All");
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Tab);
            compare(focused().text, "M");
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Tab);
            compare(focused().text, "News");
            keyClick(Qt.Key_Tab);
            compare(focused(), button);
            keyClick(Qt.Key_Backtab);
            keyClick(Qt.Key_Backtab);
            compare(focused().text, "T");
            keyClick(Qt.Key_Backtab);
            compare(focused().text, "Pending");
        }

        function test_arrowsChoose() {
            keyClick(Qt.Key_Left);
            compare(picker.selected, 0);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Down);
            compare(picker.selected, 2);
            verify(focused().visualFocus && focused().checked);
            keyClick(Qt.Key_Right);
            compare(picker.selected, 2);
        }

        function test_arrowsGoFromLineToLine_data() {
            return [
                {
                    tag: "down",
                    from: "News",
                    key: Qt.Key_Down,
                    to: "Films"
                },
                {
                    tag: "up",
                    from: "Music",
                    key: Qt.Key_Up,
                    to: "Games"
                },
                {
                    tag: "down where there is nothing",
                    from: "Chat",
                    key: Qt.Key_Down,
                    to: "Chat"
                },
                {
                    tag: "up from the first line",
                    from: "Games",
                    key: Qt.Key_Up,
                    to: "Games"
                },
                {
                    tag: "right, into the next line",
                    from: "Chat",
                    key: Qt.Key_Right,
                    to: "Films"
                },
                {
                    tag: "left",
                    from: "Games",
                    key: Qt.Key_Left,
                    to: "News"
                },
            ];
        }

        function test_arrowsGoFromLineToLine(data) {
            grid.choose(grid.choices.findIndex(choice => choice.title === data.from));
            keyClick(data.key);
            compare(focused().text, data.to);
            verify(focused().checked);
        }

        function test_ownerKeepsTheChoice() {
            picker.isStubborn = true;
            mouseClick(picker, picker.width - 20, picker.height / 2);
            compare(picker.selected, 0);
            compare(focused().text, "Done");
            verify(!focused().checked);
        }

        function test_daysAreSwitched() {
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Space);
            compare(days.selectedDays, [2, 0]);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Right);
            verify(focused().checked);
            keyClick(Qt.Key_Return);
            compare(days.selectedDays, [0]);
            verify(!focused().checked);
            mouseClick(days, 18, 18);
            compare(days.toggledDays, [0, 2, 0]);
            verify(!focused().visualFocus);
        }

        function test_buttonTakesEveryKeyThatMeansGo() {
            button.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Enter);
            compare(button.clicks, 3);
        }

        // As what lies behind a sheet is, which a screen reader finds all the same.
        function test_screenReaderPressesNothingThatIsDisabled() {
            keyClick(Qt.Key_Tab);
            const day = focused();
            for (const isEnabled of [false, true]) {
                button.enabled = days.enabled = toggle.enabled = isEnabled;
                button.Accessible.pressAction();
                day.Accessible.toggleAction();
                toggle.Accessible.toggleAction();
                compare(button.clicks, isEnabled ? 1 : 0);
                compare(days.toggledDays, isEnabled ? [0] : []);
                compare(toggle.isOn, isEnabled);
            }
        }
    }
}
