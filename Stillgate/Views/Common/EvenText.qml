import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem

// A paragraph in the middle of a page, in lines of about the same length: the last is never a single word.
SGText {
    id: root

    // From the window: what a layout gives changes while it works, and it doesn't look again.
    required property real longestLine

    readonly property real preferredWidth: text.includes("\n") ? longestLine : evenWidth

    // The smallest width that needs no more lines than the longest line does.
    readonly property real evenWidth: {
        const words = text.split(/\s+/).map(word => metrics.advanceWidth(word));
        const lines = lineCount(words, longestLine);
        let tooNarrow = Math.max(0, Math.min(Math.max(...words), longestLine) - 1);
        let wideEnough = longestLine;
        while (wideEnough - tooNarrow > 1) {
            const width = (tooNarrow + wideEnough) / 2;
            if (lineCount(words, width) > lines)
                tooNarrow = width;
            else
                wideEnough = width;
        }
        // A little more, for what rounding takes. As a property it also says when the font, and so all, has changed.
        return Math.min(Math.ceil(wideEnough + metrics.averageCharacterWidth / 2), longestLine);
    }

    // A word that is longer than a line is broken where the line ends.
    function lineCount(wordWidths: var, width: real): int {
        const space = metrics.advanceWidth(" ");
        let lines = 1;
        let used = 0;
        for (const word of wordWidths) {
            if (used > 0 && used + space + word > width) {
                ++lines;
                used = 0;
            }
            used += word + (used > 0 ? space : 0);
            if (used > width) {
                lines += Math.ceil(used / width) - 1;
                used %= width;
            }
        }
        return lines;
    }

    horizontalAlignment: Text.AlignHCenter
    color: Tokens.sgTextSecondary
    Layout.alignment: Qt.AlignHCenter
    Layout.fillWidth: false
    Layout.preferredWidth: preferredWidth

    FontMetrics {
        id: metrics

        font: root.font
    }
}
