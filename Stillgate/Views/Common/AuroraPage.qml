import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Stillgate.DesignSystem

// A window's whole content: a hero, a heading, a paragraph, and what belongs to the screen, centred on the aurora. On a
// screen that is too small for it, it scrolls.
Rectangle {
    id: page

    property alias hero: heroLoader.sourceComponent
    property string title
    property string paragraph
    default property alias content: column.data

    color: Tokens.sgBgPrimary

    AuroraBackground {
        anchors.fill: parent
    }

    Flickable {
        id: flickable

        anchors.fill: parent
        contentWidth: width
        contentHeight: Math.max(height, column.implicitHeight + 2 * column.margin)
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {
            policy: flickable.interactive ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
        }

        ColumnLayout {
            id: column

            readonly property int margin: Tokens.space32

            anchors.centerIn: parent
            width: Math.min(parent.width - 2 * margin, 420)
            spacing: Tokens.space24

            Loader {
                id: heroLoader

                Layout.alignment: Qt.AlignHCenter
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: Tokens.space12

                SGText {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    style: Styles.Hero
                    text: page.title
                    Accessible.role: Accessible.Heading
                }
                SGText {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    visible: text !== ""
                    text: page.paragraph
                    color: Tokens.sgTextSecondary
                }
            }
        }
    }
}
