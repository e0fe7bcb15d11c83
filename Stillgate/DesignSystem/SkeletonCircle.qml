import Stillgate.DesignSystem

SkeletonShape {
    required property int size

    implicitWidth: size
    implicitHeight: size
    radius: size / 2
}
