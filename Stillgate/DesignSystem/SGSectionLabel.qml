import QtQuick
import Stillgate.DesignSystem

SGText {
    id: root

    required property string title

    style: Styles.Label
    text: TextCase.upperCase(title)
    Accessible.role: Accessible.Heading
    Accessible.name: title
}
