import Stillgate.DesignSystem

// Stands for a line of text.
SkeletonRect {
    implicitHeight: 12
    radius: 4
}
