import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A placeholder in a layout: as wide as `implicitWidth`, or as the layout if that isn't set.
SkeletonShape {
    radius: Tokens.radiusSmall
    Layout.fillWidth: implicitWidth === 0
}
