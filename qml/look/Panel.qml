import QtQuick
import QtQuick.Templates as T
import Coinhall

// A rack panel: a rounded plate with a vertical gradient (or the carbon weave), a
// bevel that lights the top edge and shades the bottom, optional screws near the
// corners, and the content inset by `padding`. Like a Pane, a single child (for
// example a layout with anchors.fill: parent) gives the panel its implicit size.
T.Pane {
    id: root

    // Whether screw heads sit in the corners, inside the padding.
    property bool screws: false
    property real radius: Tokens.panelRadius

    padding: Tokens.panelPadding
    implicitWidth: Math.max(implicitBackgroundWidth, contentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, contentHeight + topPadding + bottomPadding)

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: root.radius
            visible: !Looks.current.carbon
            gradient: Gradient {
                GradientStop { position: 0; color: Looks.current.panelTop }
                GradientStop { position: 1; color: Looks.current.panelBottom }
            }
        }

        Loader {
            anchors.fill: parent
            active: Looks.current.carbon
            sourceComponent: Weave { radius: root.radius }
        }

        // The bevel: white at the top edge, black at the bottom, clear between; with the rim.
        Rectangle {
            anchors.fill: parent
            radius: root.radius
            border.width: 1
            border.color: Looks.current.line
            gradient: Gradient {
                GradientStop { position: 0; color: Qt.rgba(1, 1, 1, 0.08) }
                GradientStop { position: 0.2; color: Qt.rgba(1, 1, 1, 0) }
                GradientStop { position: 0.7; color: Qt.rgba(0, 0, 0, 0) }
                GradientStop { position: 1; color: Qt.rgba(0, 0, 0, 0.24) }
            }
        }

        Repeater {
            model: root.screws ? 4 : 0

            Screw {
                required property int index

                // Centred in the corner's square of padding, clear of the content.
                x: (index % 2 === 0 ? root.leftPadding / 2 : parent.width - root.rightPadding / 2) - width / 2
                y: (index < 2 ? root.topPadding / 2 : parent.height - root.bottomPadding / 2) - height / 2
            }
        }
    }
}
