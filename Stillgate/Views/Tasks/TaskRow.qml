import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization

// A task, with what can be done about it.
SGGlassCard {
    id: card

    required property var row

    signal completed
    signal approved
    signal rejected

    RowLayout {
        spacing: Tokens.space12

        SGIcon {
            symbol: card.row.symbol
            size: 22
            color: card.row.color
        }
        ColumnLayout {
            spacing: 2

            SGText {
                text: card.row.title
                font.weight: Font.Medium
            }
            Flow {
                id: details

                readonly property int gap: Tokens.space12 // from one to the next, and not from line to line

                spacing: 2
                Layout.fillWidth: true

                Row {
                    visible: card.row.rewardText !== ""
                    rightPadding: details.gap
                    spacing: Tokens.space4

                    SGIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: "gift"
                        size: 12
                        color: Tokens.sgTextSecondary
                    }
                    SGText {
                        style: Styles.BodySmall
                        text: card.row.rewardText
                    }
                }
                SGText {
                    width: Math.min(Math.ceil(implicitWidth), parent.width)
                    rightPadding: details.gap
                    visible: text !== ""
                    style: Styles.BodySmall
                    text: card.row.fromText
                }
                SGText {
                    width: Math.min(Math.ceil(implicitWidth), parent.width)
                    style: Styles.BodySmall
                    text: card.row.statusText
                    color: card.row.color
                }
            }
        }
        SGButton {
            Layout.minimumWidth: implicitWidth
            visible: title !== ""
            isCompact: true
            style: Styles.Secondary
            icon.name: card.row.completeSymbol
            title: card.row.completeTitle
            Accessible.description: card.row.title
            onClicked: {
                if (activeFocus) // which would go with the button
                    nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
                card.completed();
            }
        }
        SGIconButton {
            visible: card.row.canBeJudged
            icon.name: "checkmark"
            color: Tokens.sgSuccess
            title: L.text("tasks.approve")
            Accessible.description: card.row.title
            onClicked: card.approved()
        }
        SGIconButton {
            visible: card.row.canBeJudged
            icon.name: "xmark"
            color: Tokens.sgDanger
            title: L.text("tasks.reject")
            Accessible.description: card.row.title
            onClicked: card.rejected()
        }
        Rectangle {
            visible: card.row.earnedText !== ""
            implicitWidth: earned.implicitWidth + 20
            implicitHeight: earned.implicitHeight + 8
            radius: height / 2
            color: Tokens.withOpacity(Tokens.sgSuccess, 0.12)

            Row {
                id: earned

                anchors.centerIn: parent
                spacing: 6

                SGIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "checkmark.circle.fill"
                    size: 12
                    color: Tokens.sgSuccess
                }
                SGText {
                    style: Styles.BodySmall
                    text: card.row.earnedText
                    color: Tokens.sgSuccess
                    font.weight: Font.Medium
                }
            }
        }
    }
}
