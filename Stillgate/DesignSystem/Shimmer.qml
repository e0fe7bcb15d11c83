import QtQuick
import Stillgate.DesignSystem

// Lets light pass over the skeleton shapes inside it, again and again.
ShimmerBand {
    id: root

    phase: steps.value

    SteppedPhase {
        id: steps

        item: root
        isEnabled: !Motion.isReduced
        duration: 1500
        stepsPerSecond: 20
    }
}
