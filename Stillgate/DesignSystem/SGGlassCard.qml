import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A column on glass: a little light on whatever is behind, and a hairline around it. In a card that is taller than it
// needs to be, such as one beside a taller one, the column stays at the top.
Item {
    id: root

    default property alias content: column.data
    property int padding: Tokens.space16
    property real radius: Tokens.radiusLarge

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding
    Layout.fillWidth: true

    GlassPane {
        anchors.fill: parent
        radius: root.radius
    }

    ColumnLayout {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Tokens.space12
    }
}
