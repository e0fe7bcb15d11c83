import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Common

// A screen of the settings window: a heading with its buttons, and below it what belongs to the screen. It scrolls. Rows
// that may be many belong into a TabList.
SGScrollPage {
    id: page

    required property string title
    property string subtitle
    property Component actions: null
    default property alias content: column.data

    // What lies over the whole window, and has to be answered first: an SGSheet or an SGConfirmation, or nothing.
    property Component sheet: null

    readonly property int margin: width < 560 ? Tokens.space24 : Tokens.space32

    contentWidth: width
    contentHeight: column.implicitHeight + 2 * margin

    ColumnLayout {
        id: column

        x: (page.width - width) / 2
        y: page.margin
        width: Math.min(page.width - 2 * page.margin, 760)
        spacing: Tokens.space24

        TabHeader {
            title: page.title
            subtitle: page.subtitle
            actions: page.actions
        }
    }
}
