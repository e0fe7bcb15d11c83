import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Common
import Stillgate.Views.Settings

// The tabs, and who is signed in. It is one stop of the Tab key, and the arrow keys choose.
Rectangle {
    id: root

    required property SettingsViewModel viewModel

    readonly property Item focused: Window.activeFocusItem
    readonly property bool hasKeyboard: holds(focused)

    function holds(item: Item): bool {
        let at = item;
        while (at && at !== root)
            at = at.parent;
        return at !== null;
    }

    color: Tokens.sgBgSidebar

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Tokens.sgGlassBorder
    }
    SGScrollPage {
        anchors.fill: parent
        anchors.bottomMargin: user.visible ? user.height : 0
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * Tokens.space16
        clip: true

        ColumnLayout {
            id: column

            x: Tokens.space12
            y: Tokens.space16
            width: parent.width - 2 * Tokens.space12
            spacing: 2

            RowLayout {
                spacing: Tokens.space8
                Layout.leftMargin: Tokens.space8
                Layout.bottomMargin: Tokens.space12

                Image {
                    source: "qrc:/stillgate/app-icon/stillgate.svg"
                    sourceSize {
                        width: 28
                        height: 28
                    }
                    Accessible.ignored: true
                }
                SGText {
                    style: Styles.ButtonTitle
                    text: "Stillgate"
                }
            }
            Repeater {
                model: root.viewModel.sidebarItems

                // qmllint disable unqualified
                SidebarRow {
                    viewModel: root.viewModel
                    isKeyboardNear: root.hasKeyboard
                }
                // qmllint enable unqualified
            }
        }
    }
    Item {
        id: user

        anchors.bottom: parent.bottom
        width: parent.width
        height: userRow.implicitHeight + 2 * Tokens.space16
        visible: root.viewModel.userName !== ""

        Rectangle {
            width: parent.width
            height: 1
            color: Tokens.sgGlassBorder
        }
        RowLayout {
            id: userRow

            x: Tokens.space16
            width: parent.width - 2 * x
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.space12

            Rectangle {
                implicitWidth: 28
                implicitHeight: 28
                radius: 14
                color: Tokens.withOpacity(Tokens.sgAccent, 0.2)

                SGText {
                    anchors.centerIn: parent
                    style: Styles.BodySmall
                    text: root.viewModel.userInitial
                    color: Tokens.sgAccent
                    font.weight: Font.DemiBold
                    Accessible.ignored: true
                }
            }
            SGText {
                style: Styles.BodySmall
                text: root.viewModel.userName
                color: Tokens.sgTextPrimary
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }
        }
    }
}
