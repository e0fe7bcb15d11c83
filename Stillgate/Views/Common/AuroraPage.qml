import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Common

// A window's whole content: a hero, a heading, a paragraph, and what belongs to the screen, centred on the aurora. On a
// screen that is too small for it, it scrolls.
Rectangle {
    id: page

    property alias hero: heroLoader.sourceComponent
    property string title
    property string paragraph
    default property alias content: column.data

    // Return was pressed while no control had the keyboard.
    signal confirmed

    readonly property real paragraphWidth: width > 0 ? Math.min(width - 2 * column.margin, 380) : 380

    color: Tokens.sgBgPrimary

    AuroraBackground {
        anchors.fill: parent
    }

    SGScrollPage {
        anchors.fill: parent
        Keys.onReturnPressed: page.confirmed()
        Keys.onEnterPressed: page.confirmed()
        contentWidth: width
        contentHeight: Math.max(height, column.implicitHeight + 2 * column.margin)

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
            Column {
                Layout.fillWidth: true
                spacing: Tokens.space12

                SGText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    style: Styles.Hero
                    text: page.title
                    Accessible.role: Accessible.Heading
                }
                EvenText {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: preferredWidth
                    longestLine: page.paragraphWidth
                    visible: text !== ""
                    text: page.paragraph
                }
            }
        }
    }
}
