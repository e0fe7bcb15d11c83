import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// What stands where something is still loading.
ColumnLayout {
    spacing: 0

    Section {
        title: "Skeleton shapes"

        ShimmerBand {
            phase: 0.5
            implicitHeight: 120
            Layout.fillWidth: true

            ColumnLayout {
                width: parent.width
                spacing: Tokens.space12

                SkeletonCircle {
                    size: 40
                }

                SkeletonRect {
                    implicitHeight: 44
                }

                SkeletonLine {
                    implicitWidth: 240
                }
            }
        }
    }

    Section {
        title: "Notifications skeleton"

        NotificationsSkeletonView {
            Layout.fillWidth: true
        }
    }

    Section {
        title: "Screen time skeleton"

        ScreenTimeSkeletonView {
            Layout.fillWidth: true
        }
    }

    Section {
        title: "Guardian skeleton"

        GuardianSkeletonView {
            Layout.fillWidth: true
        }
    }

    Section {
        title: "Tasks skeleton"

        TasksSkeletonView {
            Layout.fillWidth: true
        }
    }

    Section {
        title: "Connections skeleton"

        ConnectionsSkeletonView {
            Layout.fillWidth: true
        }
    }
}
