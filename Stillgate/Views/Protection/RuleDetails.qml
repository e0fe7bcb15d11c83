import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Protection

// What an unfolded rule tells.
ColumnLayout {
    id: root

    required property var row

    component DetailLine: RowLayout {
        id: line

        required property string symbol
        required property string label
        required property string value

        spacing: Tokens.space8

        SGIcon {
            symbol: line.symbol
            size: 14
            color: Tokens.sgTextSecondary
        }
        SGText {
            style: Styles.BodySmall
            text: line.label
        }
        SGText {
            Layout.fillWidth: false
            style: Styles.BodySmall
            text: line.value
            color: Tokens.sgTextPrimary
        }
    }

    spacing: Tokens.space12

    Rectangle {
        implicitHeight: 1
        color: Tokens.sgGlassBorder
        Layout.fillWidth: true
    }
    DetailLine {
        symbol: "lock.fill"
        label: L.text("blockMode.title")
        value: root.row.policyName
    }
    DetailLine {
        visible: value !== ""
        symbol: "clock.fill"
        label: L.text("blockMode.cooldownPeriod")
        value: root.row.cooldown
    }
    Repeater {
        model: root.row.sections

        ColumnLayout {
            id: section

            required property ruleSection modelData

            spacing: Tokens.space8

            RowLayout {
                spacing: Tokens.space8

                SGIcon {
                    symbol: section.modelData.symbol
                    size: 14
                    color: Tokens.sgTextSecondary
                }
                SGText {
                    style: Styles.BodySmall
                    text: section.modelData.title
                }
            }
            Flow {
                id: entries

                spacing: Tokens.space8
                Layout.fillWidth: true

                Repeater {
                    model: section.modelData.entries

                    // qmllint disable unqualified
                    Tag {
                        required property string modelData

                        text: modelData
                        widest: entries.width
                    }
                    // qmllint enable unqualified
                }
            }
            SGText {
                visible: text !== ""
                style: Styles.BodySmall
                text: section.modelData.more
            }
        }
    }
    SGText {
        visible: root.row.blocksNothing
        style: Styles.BodySmall
        text: L.text("desktop.protection.noRulesDesc")
    }
}
