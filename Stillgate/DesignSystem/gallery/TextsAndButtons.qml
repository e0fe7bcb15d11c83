import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// Texts, buttons, and both on glass.
ColumnLayout {
    spacing: 0

    Section {
        title: "Text"

        SGText {
            style: Styles.Hero
            text: "Odaklan. Gerisi bekleyebilir."
        }

        SGText {
            style: Styles.Title
            text: "A calmer screen, for you and your family"
        }

        SGText {
            Layout.maximumWidth: 420
            text: "Body: distractions stay closed while you work, and open again when you are done. Nothing is shared, and nothing is lost."
        }

        SGText {
            Layout.maximumWidth: 420
            style: Styles.BodySmall
            text: "Body small: distractions stay closed while you work, and open again when you are done. Nothing is shared, and nothing is lost."
        }

        SGText {
            style: Styles.Hint
            text: "Hint: you can change this later"
        }
    }

    Section {
        title: "Gradient button"

        RowLayout {
            spacing: Tokens.space16

            SGGradientButton {
                title: "Continue"
            }

            SGGradientButton {
                title: "Continue"
                icon.name: "arrow.right"
                showsHover: true
            }

            SGGradientButton {
                title: "Pressed"
                down: true
            }

            SGGradientButton {
                title: "Focus"
                showsFocus: true
            }

            SGGradientButton {
                title: "Disabled"
                enabled: false
            }
        }

        SGGradientButton {
            title: "Full width"
            icon.name: "lock.shield.fill"
            isFullWidth: true
        }

        SGGradientButton {
            title: "Çalışma saatlerimde bütün dikkat dağıtıcı uygulamaları ve siteleri engelle"
            icon.name: "lock.shield.fill"
            Layout.maximumWidth: 320
        }
    }

    Section {
        title: "Buttons"

        Repeater {
            model: [
                {
                    "name": "Primary",
                    "style": Styles.Primary
                },
                {
                    "name": "Secondary",
                    "style": Styles.Secondary
                },
                {
                    "name": "Outline",
                    "style": Styles.Outline
                },
                {
                    "name": "Danger",
                    "style": Styles.Danger
                },
                {
                    "name": "Ghost",
                    "style": Styles.Ghost
                }
            ]

            RowLayout {
                id: styleRow

                required property var modelData

                spacing: Tokens.space16

                SGButton {
                    style: styleRow.modelData.style
                    title: styleRow.modelData.name
                }

                SGButton {
                    style: styleRow.modelData.style
                    title: "Hover"
                    icon.name: "plus"
                    showsHover: true
                }

                SGButton {
                    style: styleRow.modelData.style
                    title: "Pressed"
                    down: true
                }

                SGButton {
                    style: styleRow.modelData.style
                    title: "Focus"
                    showsFocus: true
                }

                SGButton {
                    style: styleRow.modelData.style
                    title: "Disabled"
                    enabled: false
                }
            }
        }
    }

    Section {
        title: "Glass"

        Item {
            implicitHeight: 620
            implicitWidth: 520

            AuroraBackground {
                anchors.fill: parent
            }

            SGGlassCard {
                anchors.centerIn: parent
                width: 360
                padding: Tokens.space24

                SGText {
                    style: Styles.Title
                    text: "Welcome back"
                }

                SGText {
                    style: Styles.BodySmall
                    text: "Sign in to keep your blocks, tasks and streak on every device."
                }

                SGGradientButton {
                    title: "Sign in"
                    icon.name: "lock.shield.fill"
                    isFullWidth: true
                }

                SGButton {
                    title: "Create an account"
                    style: Styles.Ghost
                    isFullWidth: true
                }
            }
        }
    }
}
