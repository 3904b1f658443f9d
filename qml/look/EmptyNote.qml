import QtQuick
import Coinhall

// The note shown where a list is empty, centred across the available width.
BodyText {
    id: root

    width: parent ? parent.width : implicitWidth
    padding: Tokens.notePadding
    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.WordWrap
    font.pointSize: Tokens.pt(Tokens.noteSize)
    color: Looks.current.muted
}
