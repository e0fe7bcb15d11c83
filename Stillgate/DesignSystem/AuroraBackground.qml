import QtQuick
import Stillgate.DesignSystem

// The background of the windows that stand alone: three lights that drift, so slowly that few steps a second look
// smooth: a step of a pixel changes no colour by a visible amount.
Rectangle {
    id: root

    color: Tokens.sgBgPrimary
    clip: true

    SteppedPhase {
        id: drift

        item: root
        isEnabled: !Motion.isReduced
        duration: 8000
        stepsPerSecond: 5
        reverses: true
    }

    component Light: Glow {
        required property real phase
        required property point from
        required property point to

        height: width
        radius: width / 2
        // Whole pixels, which are copied and not interpolated.
        x: Math.round(parent.width * (from.x + (to.x - from.x) * phase) - width / 2)
        y: Math.round(parent.height * (from.y + (to.y - from.y) * phase) - height / 2)
    }

    Light {
        width: 300
        blur: 80
        color: Tokens.withOpacity(Tokens.sgAurora1, 0.15)
        phase: drift.value
        from: Qt.point(0.2, 0.12)
        to: Qt.point(0.34, 0.22)
    }

    Light {
        width: 250
        blur: 70
        color: Tokens.withOpacity(Tokens.sgAurora2, 0.1)
        phase: drift.value
        from: Qt.point(0.88, 0.42)
        to: Qt.point(0.74, 0.34)
    }

    Light {
        width: 200
        blur: 60
        color: Tokens.withOpacity(Tokens.sgAurora3, 0.08)
        phase: drift.value
        from: Qt.point(0.3, 0.94)
        to: Qt.point(0.46, 0.84)
    }
}
