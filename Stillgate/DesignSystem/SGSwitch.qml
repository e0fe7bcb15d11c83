import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// Something that is on or off: a symbol, a title with a note below it, and the switch at the end.
//
// `isOn` belongs to the owner: `onSwitched` gives what the user wants.
T.Switch {
    id: root

    required property string title
    required property bool isOn
    property string note

    signal switched(bool isOn)

    function switchOver() {
        if (!enabled)
            return;
        toggle();
        toggled();
    }

    text: title
    checked: isOn
    implicitHeight: Math.max(44, implicitContentHeight)
    Layout.fillWidth: true
    Accessible.description: note

    // A click checks it by itself; whether it stays so is for the owner to say.
    onToggled: {
        switched(checked);
        checked = Qt.binding(() => isOn);
    }
    Keys.onReturnPressed: event => event.isAutoRepeat || switchOver()
    Keys.onEnterPressed: event => event.isAutoRepeat || switchOver()
    Accessible.onPressAction: switchOver()
    Accessible.onToggleAction: switchOver()

    contentItem: RowLayout {
        spacing: Tokens.space12

        SGIcon {
            symbol: root.icon.name
            visible: symbol !== ""
            color: Tokens.sgTextSecondary
        }
        ColumnLayout {
            spacing: 0

            SGText {
                text: root.title
                Accessible.ignored: true
            }
            SGText {
                visible: root.note !== ""
                style: Styles.BodySmall
                text: root.note
                color: Tokens.sgTextSecondary
                Accessible.ignored: true
            }
        }
        Rectangle {
            implicitWidth: 40
            implicitHeight: 24
            radius: 12
            color: root.checked ? Tokens.sgAccent : Tokens.sgBgElevated

            Rectangle {
                x: root.checked ? parent.width - width - 3 : 3
                anchors.verticalCenter: parent.verticalCenter
                width: 18
                height: 18
                radius: 9
                color: Tokens.white

                Behavior on x {
                    enabled: !Motion.isReduced

                    NumberAnimation {
                        duration: 120
                    }
                }
            }
        }
    }

    SGFocusRing {
        targetRadius: Tokens.radiusSmall
        visible: root.visualFocus
    }
}
