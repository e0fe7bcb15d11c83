import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.AppPicker

// Apps to be chosen: how many are, a field to search, and the list, which is one stop of the Tab key: the arrow keys
// go from app to app, Space and Return choose.
ColumnLayout {
    id: root

    required property AppPickerModel picker

    spacing: Tokens.space12

    RowLayout {
        SGText {
            text: L.text("desktop.quickBlock.selectApps")
            font.weight: Font.Medium
        }
        SGText {
            Layout.fillWidth: false
            visible: text !== ""
            style: Styles.BodySmall
            text: root.picker.selectionText
            color: Tokens.sgAccent
        }
    }
    SGTextField {
        title: L.text("common.searchApps")
        placeholderText: title
        symbol: "magnifyingglass"
        text: root.picker.searchText
        onTextEdited: root.picker.searchText = text
        Keys.onDownPressed: list.startAtCurrent()
        Keys.onReturnPressed: list.startAtCurrent()
        Keys.onEnterPressed: list.startAtCurrent()
    }
    Rectangle {
        implicitHeight: 248
        radius: Tokens.radiusMedium
        color: Tokens.sgGlass
        Layout.fillWidth: true

        SGText {
            anchors.centerIn: parent
            width: parent.width - 2 * Tokens.space16
            visible: root.picker.findsNothing
            horizontalAlignment: Text.AlignHCenter
            text: L.text("common.noAppsFound")
            color: Tokens.sgTextSecondary
        }
        ListView {
            id: list

            function startAtCurrent() {
                currentIndex = Math.max(0, currentIndex);
                currentItem?.forceActiveFocus(Qt.TabFocusReason);
            }

            function moveTo(index: int) {
                if (index < 0 || index >= count)
                    return;
                currentIndex = index;
                currentItem.forceActiveFocus(Qt.TabFocusReason);
            }

            anchors.fill: parent
            anchors.margins: Tokens.space4
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: false // a row says it, so that it has the keyboard itself
            highlightMoveDuration: 0
            currentIndex: 0
            model: root.picker.apps
            Accessible.role: Accessible.List
            Accessible.name: L.text("desktop.quickBlock.selectApps")
            ScrollBar.vertical: ScrollBar {
                Accessible.ignored: true
            }

            delegate: AppPickerRow {
                width: ListView.view.width
                isTabStop: ListView.isCurrentItem
                onToggledByUser: bundleId => root.picker.toggle(bundleId)
                onMovedTo: index => list.moveTo(index)
                onGotKeyboard: index => list.currentIndex = index
            }
        }
    }
}
