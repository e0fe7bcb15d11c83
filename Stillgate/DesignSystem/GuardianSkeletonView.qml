import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// The closed cards of managed people.
Shimmer {
    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column

        width: parent.width
        spacing: Tokens.space12

        Repeater {
            model: 3

            SGGlassCard {
                SkeletonRow {
                    pictureSize: 40
                    accessory: Qt.size(16, 16)
                }
            }
        }
    }
}
