import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Views.Common

// A few figures in cards of the same size: side by side, or, where a value doesn't fit, in pairs or one below the other.
GridLayout {
    id: root

    required property var figures

    readonly property real widestCard: {
        let widest = 0;
        for (let index = 0; index < cards.count; ++index)
            widest = Math.max(widest, cards.itemAt(index)?.naturalWidth ?? 0);
        return widest;
    }

    function fit(inARow: int): bool {
        return widestCard <= (width - (inARow - 1) * columnSpacing) / inARow;
    }

    columns: fit(figures.length) ? figures.length : figures.length % 2 === 0 && fit(2) ? 2 : 1
    columnSpacing: Tokens.space12
    rowSpacing: Tokens.space12
    Layout.fillWidth: true

    Repeater {
        id: cards

        model: root.figures

        StatCard {
            required property figure modelData

            title: modelData.title
            value: modelData.value
            symbol: modelData.symbol
            color: modelData.color
        }
    }
}
