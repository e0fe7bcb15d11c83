import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

Window {
    id: root

    required property list<string> symbols
    readonly property real pageHeight: page.implicitHeight

    width: 880
    height: 720
    visible: true
    title: "Gallery"
    color: Tokens.sgBgPrimary

    onActiveFocusItemChanged: if (activeFocusItem && activeFocusItem !== scroll)
        scroll.show(activeFocusItem)

    Flickable {
        id: scroll

        function show(item: Item) {
            const top = item.mapToItem(page, 0, 0).y - Tokens.space24;
            const bottom = top + item.height + 2 * Tokens.space24;
            scrollTo(top < contentY ? top : bottom > contentY + height ? bottom - height : contentY);
        }

        function scrollTo(y: real) {
            contentY = Math.max(0, Math.min(y, contentHeight - height));
        }

        anchors.fill: parent
        contentHeight: page.implicitHeight
        focus: true

        Keys.onDownPressed: scrollTo(contentY + 60)
        Keys.onUpPressed: scrollTo(contentY - 60)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_PageDown)
                scrollTo(contentY + height - 60);
            else if (event.key === Qt.Key_PageUp)
                scrollTo(contentY - height + 60);
        }

        ColumnLayout {
            id: page

            width: root.width
            spacing: 0

            TextsAndButtons {}

            ValuesAndChoices {}

            Skeletons {}

            Section {
                title: "Icons"

                Flow {
                    spacing: Tokens.space8
                    Layout.fillWidth: true

                    Repeater {
                        model: root.symbols

                        Column {
                            id: symbolCell

                            required property string modelData

                            width: 160
                            spacing: Tokens.space8

                            SGIcon {
                                symbol: symbolCell.modelData
                                size: 24
                                anchors.horizontalCenter: parent.horizontalCenter
                            }

                            SGText {
                                width: parent.width
                                style: Styles.Label
                                text: symbolCell.modelData
                                color: Tokens.sgTextSecondary
                                font.letterSpacing: 0
                                horizontalAlignment: Text.AlignHCenter
                            }
                        }
                    }
                }
            }
        }
    }
}
