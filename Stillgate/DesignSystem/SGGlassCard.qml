import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A column on glass: a little light on whatever is behind, and a hairline around it.
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

        anchors.fill: parent
        anchors.margins: root.padding
        spacing: Tokens.space12
    }
}
