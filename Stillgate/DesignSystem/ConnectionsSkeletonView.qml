import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// The members of a group, in two columns, with three figures each.
Shimmer {
    implicitHeight: grid.implicitHeight

    GridLayout {
        id: grid

        width: parent.width
        columns: 2
        columnSpacing: Tokens.space12
        rowSpacing: Tokens.space12

        Repeater {
            model: 4

            SGGlassCard {
                SkeletonRow {
                    pictureSize: 40
                    accessory: Qt.size(0, 0)
                }

                RowLayout {
                    spacing: Tokens.space16

                    Repeater {
                        model: 3

                        SkeletonLine {
                            implicitHeight: 16
                        }
                    }
                }
            }
        }
    }
}
