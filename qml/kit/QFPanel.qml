import QtQuick
import QtQuick.Templates as T
import Coinhall

// The kit's panel: a rounded plate with the theme's vertical gradient and a one-point
// rim inside its edge that runs from light at the top to dark at the bottom.
T.Pane {
    id: root

    property real radius: 12

    padding: 14
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding

    // The rim is the outer plate; the gradient plate sits one point inside it. The rim's
    // colours are white at 35% over the top and black at 50% over the bottom.
    background: Rectangle {
        radius: root.radius
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.tint(QFSKitHost.theme.panelTop, Qt.rgba(1, 1, 1, 0.35)) }
            GradientStop { position: 1; color: Qt.tint(QFSKitHost.theme.panelBottom, Qt.rgba(0, 0, 0, 0.5)) }
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: 1
            radius: Math.max(0, root.radius - 1)
            gradient: Gradient {
                GradientStop { position: 0; color: QFSKitHost.theme.panelTop }
                GradientStop { position: 1; color: QFSKitHost.theme.panelBottom }
            }
        }
    }
}
