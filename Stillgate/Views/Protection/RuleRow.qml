import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Protection

// A rule: what it is about and how firm it is; unfolded, what exactly it blocks. `onDeleteAsked` where it can be deleted.
Item {
    id: root

    required property var row
    property bool canBeDeleted: true
    property bool isExpanded: false
    readonly property bool isNamed: row.title !== ""
    readonly property string name: isNamed ? row.title : row.subtitle
    readonly property string foldText: L.text(isExpanded ? "common.expanded" : "common.collapsed")

    signal deleteAsked(string ruleId)

    implicitWidth: 400
    implicitHeight: card.implicitHeight
    Layout.fillWidth: true

    SGGlassCard {
        id: card

        width: parent.width
        padding: Tokens.space8

        RowLayout {
            spacing: Tokens.space4

            T.AbstractButton {
                id: fold

                text: root.name
                padding: Tokens.space4
                implicitHeight: implicitContentHeight + topPadding + bottomPadding
                Layout.fillWidth: true
                Accessible.description: root.isNamed ? root.row.subtitle + ", " + root.foldText : root.foldText

                onClicked: root.isExpanded = !root.isExpanded
                Keys.onReturnPressed: event => event.isAutoRepeat || fold.clicked()
                Keys.onEnterPressed: event => event.isAutoRepeat || fold.clicked()
                Accessible.onPressAction: if (fold.enabled) fold.clicked()

                contentItem: RowLayout {
                    spacing: Tokens.space12

                    Rectangle {
                        implicitWidth: 40
                        implicitHeight: 40
                        radius: Tokens.radiusMedium
                        color: Tokens.withOpacity(root.row.color, 0.12)

                        SGIcon {
                            anchors.centerIn: parent
                            symbol: root.row.symbol
                            size: 18
                            color: root.row.color
                        }
                    }
                    ColumnLayout {
                        spacing: 2

                        SGText {
                            visible: text !== ""
                            text: root.row.title
                            font.weight: Font.Medium
                            Accessible.ignored: true
                        }
                        SGText {
                            style: Styles.BodySmall
                            text: root.row.subtitle
                            Accessible.ignored: true
                        }
                    }
                    PolicyBadge {
                        policy: root.row.policy
                        Layout.fillWidth: false
                    }
                    SGIcon {
                        symbol: root.isExpanded ? "chevron.up" : "chevron.down"
                        size: 12
                        color: Tokens.sgTextSecondary
                    }
                }

                SGFocusRing {
                    targetRadius: Tokens.radiusMedium
                    anchors.margins: -1
                    visible: fold.visualFocus
                }
            }
            SGIconButton {
                visible: root.canBeDeleted
                title: L.text("common.delete") + ": " + root.name
                icon.name: "trash"
                onClicked: root.deleteAsked(root.row.id)
            }
        }
        Loader {
            Layout.fillWidth: true
            Layout.leftMargin: Tokens.space4
            Layout.rightMargin: Tokens.space4
            Layout.bottomMargin: Tokens.space8
            visible: active
            active: root.isExpanded
            opacity: active ? 1 : 0
            // qmllint disable unqualified
            sourceComponent: RuleDetails {
                row: root.row
            }
            // qmllint enable unqualified

            Behavior on opacity {
                enabled: !Motion.isReduced

                NumberAnimation {
                    duration: 200
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
}
