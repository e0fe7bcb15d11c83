import QtQuick
import QtQuick.Controls.Basic as Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Stillgate.DesignSystem

// Several lines of text to be written; it scrolls when they are more than fit. Tab goes on to the next control.
//
// `text` belongs to the owner: `onEdited` gives what the user has made of it.
Flickable {
    id: root

    required property string title
    required property string text
    property string placeholderText

    signal edited(string newText)

    implicitWidth: 240
    implicitHeight: 120
    contentWidth: width
    contentHeight: area.height
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    Layout.fillWidth: true
    Basic.ScrollBar.vertical: Basic.ScrollBar {
        Accessible.ignored: true
    }

    function keepInSight(y: real, height: real) {
        if (y < contentY + Tokens.space12)
            contentY = Math.max(0, y - Tokens.space12);
        else if (y + height > contentY + root.height - Tokens.space12)
            contentY = y + height - root.height + Tokens.space12;
    }

    T.TextArea {
        id: area

        readonly property var face: Styles.text(Styles.Body)

        width: root.width
        height: Math.max(root.height, contentHeight + topPadding + bottomPadding)
        padding: Tokens.space12
        text: root.text
        wrapMode: TextEdit.Wrap
        textFormat: TextEdit.PlainText
        color: Tokens.sgTextPrimary
        selectionColor: Tokens.sgAccent
        selectedTextColor: Tokens.black
        selectByMouse: true
        font {
            pixelSize: face.size
            weight: face.weight
        }
        Accessible.name: root.title
        Accessible.multiLine: true

        onTextChanged: if (text !== root.text)
            root.edited(text)
        onCursorRectangleChanged: root.keepInSight(cursorRectangle.y, cursorRectangle.height)
        Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

        background: Rectangle {
            radius: Tokens.radiusMedium
            color: Tokens.sgBgSecondary
            border {
                width: area.activeFocus ? 2 : 1
                color: area.activeFocus ? Tokens.sgAccent : Tokens.sgBorder
            }
        }

        SGText {
            x: area.leftPadding
            y: area.topPadding
            width: area.width - 2 * area.leftPadding
            visible: area.text === "" && area.preeditText === ""
            text: root.placeholderText
            color: Tokens.sgTextMuted
            Accessible.ignored: true
        }
    }
}
