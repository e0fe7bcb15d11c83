import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// Six switches and the button that saves them.
Shimmer {
    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column

        width: parent.width
        spacing: Tokens.space12

        Repeater {
            model: 6

            SGGlassCard {
                SkeletonRow {
                    pictureSize: 32
                    accessory: Qt.size(40, 22)
                }
            }
        }

        SkeletonRect {
            implicitWidth: 160
            implicitHeight: 44
            radius: Tokens.radiusMedium
        }
    }
}
