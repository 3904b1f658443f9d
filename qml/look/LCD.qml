pragma ComponentBehavior: Bound
import QtQuick
import Coinhall

// An LCD read-out: the content on a well of the look's LCD glass, under scan lines
// (a 1-point black line at 22% opacity every 3 points from the top). Callers draw
// their read-out in `Looks.current.lcd`.
Item {
    id: root

    property real padding: Tokens.spaceM
    property real radius: Tokens.lcdRadius
    // The read-out, laid out by the caller inside the padded area.
    default property alias content: readout.data
    // One line for each 3 points whose top lies inside the height.
    readonly property int scanLines: height > 0 ? Math.ceil(height / Tokens.lcdLinePitch) : 0

    // Like a Pane: a single child (for example a layout filling the area) sets the size.
    implicitWidth: (readout.children.length > 0 ? readout.children[0].implicitWidth : 0) + 2 * padding
    implicitHeight: (readout.children.length > 0 ? readout.children[0].implicitHeight : 0) + 2 * padding

    Rectangle {
        id: glass

        anchors.fill: parent
        radius: root.radius
        color: Looks.current.lcdGlass
    }

    Item {
        id: readout

        anchors.fill: parent
        anchors.margins: root.padding
    }

    Item {
        anchors.fill: parent
        clip: true

        Repeater {
            model: root.scanLines

            Rectangle {
                required property int index

                y: index * Tokens.lcdLinePitch
                width: root.width
                height: Tokens.lcdLineHeight
                color: Qt.rgba(0, 0, 0, 0.22)
            }
        }
    }

    // The recess: a dark inner rim.
    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: "transparent"
        border.width: 1
        border.color: Qt.rgba(0, 0, 0, 0.55)
    }
}
