import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// Tasks with what can be done about them.
Shimmer {
    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column

        width: parent.width
        spacing: Tokens.space8

        Repeater {
            model: 5

            SGGlassCard {
                SkeletonRow {
                    pictureSize: 24
                    accessory: Qt.size(88, 32)
                }
            }
        }
    }
}
