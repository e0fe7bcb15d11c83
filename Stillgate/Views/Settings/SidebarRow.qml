import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem
import Stillgate.Views.Settings

// A line of the sidebar: a tab to choose, or the title of those below it.
Loader {
    id: line

    required property sidebarItem modelData
    required property SettingsViewModel viewModel
    required property bool isKeyboardNear // in the sidebar

    sourceComponent: modelData.icon === "" ? sectionTitle : row
    Layout.fillWidth: true

    // qmllint disable unqualified
    Component {
        id: sectionTitle

        SGSectionLabel {
            title: line.modelData.label
            topPadding: Tokens.space16
            leftPadding: Tokens.space8
            bottomPadding: Tokens.space4
        }
    }
    Component {
        id: row

        T.RadioButton {
            id: button

            readonly property bool isSelected: line.viewModel.selectedTab === line.modelData.tag
            readonly property color inkColor: isSelected ? Tokens.sgTextPrimary : Tokens.sgTextSecondary

            text: line.modelData.label
            checked: isSelected
            activeFocusOnTab: isSelected || activeFocus // which an item may not lose while it has the focus
            implicitHeight: Math.max(34, implicitContentHeight + topPadding + bottomPadding)
            horizontalPadding: Tokens.space8
            verticalPadding: 7

            // A click checks it by itself; which tab is shown is for the view model to say.
            onClicked: {
                line.viewModel.select(line.modelData.tag);
                checked = Qt.binding(() => isSelected);
            }
            onIsSelectedChanged: if (isSelected && line.isKeyboardNear)
                forceActiveFocus(Qt.TabFocusReason)
            Keys.onUpPressed: line.viewModel.move(-1)
            Keys.onDownPressed: line.viewModel.move(1)
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            Accessible.onPressAction: if (button.enabled) button.clicked()
            Accessible.onToggleAction: if (button.enabled) button.clicked()

            background: Rectangle {
                radius: Tokens.radiusSmall
                color: button.isSelected ? Tokens.withOpacity(Tokens.sgAccent, 0.12) : button.hovered ? Tokens.sgGlass : Tokens.clear

                Behavior on color {
                    enabled: !Motion.isReduced

                    ColorAnimation {
                        duration: 150
                        easing.type: Easing.OutCubic
                    }
                }
            }
            contentItem: RowLayout {
                spacing: Tokens.space12

                SGIcon {
                    symbol: line.modelData.icon
                    color: button.isSelected ? Tokens.sgAccent : Tokens.sgTextSecondary
                }
                SGText {
                    text: line.modelData.label
                    color: button.inkColor
                    Accessible.ignored: true
                }
            }

            SGFocusRing {
                targetRadius: Tokens.radiusSmall
                anchors.margins: -1
                visible: button.visualFocus
            }
        }
    }
    // qmllint enable unqualified
}
