import QtQuick
import Stillgate.DesignSystem
import Stillgate.Views.Settings

// The sidebar, and the screen of the chosen tab beside it. What a screen asks for lies over both.
Rectangle {
    id: root

    required property SettingsViewModel viewModel

    color: Tokens.sgBgPrimary

    Sidebar {
        id: sidebar

        width: 220
        height: parent.height
        enabled: !overlay.item
        viewModel: root.viewModel
    }
    Loader {
        id: tab

        function showTab() {
            setSource(root.viewModel.tabSource, {
                viewModel: root.viewModel.tabViewModel
            });
        }

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        enabled: !overlay.item
        onEnabledChanged: if (enabled)
            overlay.giveFocusBack()
        Component.onCompleted: showTab()

        Connections {
            target: root.viewModel

            function onSelectedTabChanged() {
                tab.showTab();
            }
        }
    }
    Loader {
        id: overlay

        property Item focusBefore
        readonly property Item focused: Window.activeFocusItem

        function giveFocusBack() {
            (focusBefore ?? tab).forceActiveFocus(Qt.TabFocusReason);
        }

        anchors.fill: parent
        sourceComponent: tab.item?.sheet ?? null
        onFocusedChanged: if (!sourceComponent && !item) // nor while one goes
            focusBefore = focused
    }
}
