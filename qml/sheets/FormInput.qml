import QtQuick
import QtQuick.Controls.Basic
import Coinhall

// A one-line text field in the look's colours: the field of FormTextField, and the
// register's search on its own.
TextField {
    id: root

    implicitWidth: 160
    implicitHeight: Tokens.fieldHeight
    leftPadding: Tokens.spaceM
    rightPadding: Tokens.spaceM
    topPadding: 0
    bottomPadding: 0
    verticalAlignment: TextInput.AlignVCenter
    font.family: Tokens.textFamily
    font.pointSize: Tokens.pt(Tokens.bodySize)
    color: Looks.current.text
    selectionColor: Looks.current.accent
    selectedTextColor: Looks.current.bg
    placeholderTextColor: Looks.current.muted
    selectByMouse: true

    background: Rectangle {
        radius: Tokens.keyRadius
        color: Looks.current.bg
        border.width: root.activeFocus ? 1.5 : 1
        border.color: root.activeFocus ? Looks.current.accent : Looks.current.line
    }
}
