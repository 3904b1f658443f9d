import QtQuick
import QtQuick.Layouts
import Coinhall

// Covers the whole window and takes every click, wheel turn, key and shortcut but the
// window's own commands that show no data (help, zoom and quit), so nothing reaches
// what lies beneath. What it says sits in a screwed panel in the middle.
FocusScope {
    id: root

    default property alias content: column.data
    // The symbol and heading at the top of the panel.
    property string symbol
    property string title

    // A click anywhere on it.
    signal pressed()

    function passesThrough(event: var): bool {
        const zoomKeys = event.modifiers & Qt.ControlModifier && (event.key === Qt.Key_0 || event.key === Qt.Key_Equal)
        return event.matches(StandardKey.HelpContents) || event.matches(StandardKey.ZoomIn)
            || event.matches(StandardKey.ZoomOut) || event.matches(StandardKey.Quit) || zoomKeys
    }

    Keys.onShortcutOverride: event => event.accepted = !passesThrough(event)
    Keys.onPressed: event => event.accepted = true

    Rectangle {
        anchors.fill: parent
        color: Looks.current.bg
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: root.pressed()
        onWheel: wheel => wheel.accepted = true
    }

    Panel {
        anchors.centerIn: parent
        width: 420
        screws: true
        padding: 28

        ColumnLayout {
            id: column

            anchors.left: parent.left
            anchors.right: parent.right
            spacing: Tokens.spaceL

            Icon {
                Layout.alignment: Qt.AlignHCenter
                symbol: root.symbol
                size: 54
                color: Looks.current.accent
            }
            Text {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: root.title
                font.family: Tokens.displayFamily
                font.weight: Font.ExtraBold
                font.pointSize: Tokens.pt(22)
                color: Looks.current.text
                textFormat: Text.PlainText
                wrapMode: Text.WordWrap
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
        }
    }
}
