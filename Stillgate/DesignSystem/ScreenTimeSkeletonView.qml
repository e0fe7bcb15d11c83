import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// Three figures, the chart of a week, and bars by category.
Shimmer {
    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column

        width: parent.width
        spacing: Tokens.space24

        RowLayout {
            spacing: Tokens.space12

            Repeater {
                model: 3

                SGGlassCard {
                    SkeletonCircle {
                        size: 24
                    }

                    SkeletonLine {
                        implicitHeight: 20
                        Layout.maximumWidth: 72
                    }

                    SkeletonLine {
                        implicitHeight: 10
                        Layout.maximumWidth: 96
                    }
                }
            }
        }

        SGGlassCard {
            SkeletonLine {
                implicitWidth: 96
                implicitHeight: 10
            }

            RowLayout {
                spacing: Tokens.space16
                Layout.preferredHeight: 130

                Repeater {
                    model: [0.5, 0.75, 0.4, 0.9, 0.65, 1, 0.3]

                    SkeletonRect {
                        required property real modelData

                        implicitHeight: 130 * modelData
                        Layout.alignment: Qt.AlignBottom
                    }
                }
            }
        }

        SGGlassCard {
            SkeletonLine {
                implicitWidth: 96
                implicitHeight: 10
            }

            Repeater {
                model: 4

                RowLayout {
                    spacing: Tokens.space12

                    SkeletonCircle {
                        size: 28
                    }

                    SkeletonLine {
                        implicitWidth: 96
                    }

                    SkeletonRect {
                        implicitHeight: 6
                        radius: 3
                    }

                    SkeletonLine {
                        implicitWidth: 40
                    }
                }
            }
        }
    }
}
