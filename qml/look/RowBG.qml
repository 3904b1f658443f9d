import QtQuick
import Coinhall

// The background of a list row (chRow): the row padded 10 points at the sides and 7
// above and below, on a translucent black rounded plate with a faint rim in the
// look's line colour. A single child sets the row's implicit size.
Item {
    id: root

    default property alias content: holder.data

    implicitWidth: (holder.children.length > 0 ? holder.children[0].implicitWidth : 0) + 2 * Tokens.rowPadH
    implicitHeight: (holder.children.length > 0 ? holder.children[0].implicitHeight : 0) + 2 * Tokens.rowPadV

    Rectangle {
        anchors.fill: parent
        radius: Tokens.rowRadius
        color: Qt.rgba(0, 0, 0, 0.18)
        border.width: 1
        border.color: Qt.rgba(Looks.current.line.r, Looks.current.line.g, Looks.current.line.b, 0.6)
    }

    Item {
        id: holder

        anchors.fill: parent
        anchors.leftMargin: Tokens.rowPadH
        anchors.rightMargin: Tokens.rowPadH
        anchors.topMargin: Tokens.rowPadV
        anchors.bottomMargin: Tokens.rowPadV
    }
}
