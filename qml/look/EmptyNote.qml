import QtQuick
import Coinhall

// The note shown where a list is empty, centred across the available width.
Text {
    id: root

    // The look to draw with.
    property var look: Looks.current

    width: parent ? parent.width : implicitWidth
    padding: Tokens.notePadding
    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.WordWrap
    font.family: Tokens.textFamily
    font.pointSize: Tokens.pt(Tokens.noteSize)
    color: look.muted
    textFormat: Text.PlainText
}
