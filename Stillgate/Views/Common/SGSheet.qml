import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Common

// A form over the window: heading, what is to be filled in, which scrolls, and its buttons. Escape cancels; Return
// confirms unless a control takes it. The owner takes it away.
Rectangle {
    id: sheet

    required property string title
    property string subtitle
    property string symbol
    property int widest: 560
    property bool canConfirm: true
    default property alias content: column.data
    property alias header: headerRow.data // above what scrolls
    property alias buttons: buttonRow.data

    signal cancelled
    signal confirmed

    // What is new has been reached by the keyboard, or soon will be.
    function startWithFirstControl() {
        const first = column.nextItemInFocusChain(true);
        (first ?? sheet).forceActiveFocus(Qt.TabFocusReason);
    }

    function confirmByKey(event: var) {
        if (canConfirm && !event.isAutoRepeat)
            confirmed();
    }

    anchors.fill: parent
    color: Tokens.withOpacity(Tokens.black, 0.6)
    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: title
    Accessible.description: subtitle

    Component.onCompleted: startWithFirstControl()
    Keys.onEscapePressed: cancelled()
    Keys.onReturnPressed: event => confirmByKey(event)
    Keys.onEnterPressed: event => confirmByKey(event)

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        Accessible.ignored: true

        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        anchors.centerIn: parent
        width: Math.min(sheet.width - 2 * Tokens.space16, sheet.widest)
        height: Math.min(sheet.height - 2 * Tokens.space16, card.implicitHeight + 2 * Tokens.space24)
        radius: Tokens.radiusExtraLarge
        color: Tokens.sgBgSecondary
        border {
            width: 1
            color: Tokens.sgGlassBorder
        }

        ColumnLayout {
            id: card

            anchors.fill: parent
            anchors.margins: Tokens.space24
            spacing: Tokens.space16

            RowLayout {
                spacing: Tokens.space12

                Rectangle {
                    Layout.alignment: Qt.AlignTop
                    visible: sheet.symbol !== ""
                    implicitWidth: 40
                    implicitHeight: 40
                    radius: Tokens.radiusMedium
                    color: Tokens.withOpacity(Tokens.sgAccent, 0.12)

                    SGIcon {
                        anchors.centerIn: parent
                        symbol: sheet.symbol
                        size: 18
                        color: Tokens.sgAccent
                    }
                }
                ColumnLayout {
                    spacing: 2

                    SGText {
                        style: Styles.Title
                        text: sheet.title
                        Accessible.role: Accessible.Heading
                    }
                    SGText {
                        visible: sheet.subtitle !== ""
                        text: sheet.subtitle
                        color: Tokens.sgTextSecondary
                    }
                }
            }
            ColumnLayout {
                id: headerRow

                visible: children.length > 0
            }
            SGScrollPage {
                id: body

                implicitHeight: column.implicitHeight + 2 * room
                contentWidth: width
                contentHeight: column.implicitHeight + 2 * room
                clip: interactive
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.leftMargin: -room
                Layout.rightMargin: -room
                Layout.topMargin: -room
                Layout.bottomMargin: -room

                readonly property int room: 6 // for focus rings, which stand off

                ColumnLayout {
                    id: column

                    x: body.room
                    y: body.room
                    width: body.width - 2 * body.room
                    spacing: Tokens.space16
                }
            }
            RowLayout {
                id: buttonRow

                spacing: Tokens.space8
            }
        }
    }
}
