import QtQuick
import QtQuick.Controls
import Coinhall

// The window's menu bar in the kit's colours. It sits outside the zoom host, so it
// follows the zoom by its own sizes.
MenuBar {
    id: root

    font.pointSize: Tokens.pt(13) * QFZoom.value

    delegate: MenuBarItem {
        id: item

        contentItem: Text {
            text: item.text
            font: item.font
            color: QFSKitHost.theme.text
            opacity: item.enabled ? 1 : 0.5
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            color: item.highlighted ? Qt.rgba(QFSKitHost.theme.accent.r, QFSKitHost.theme.accent.g,
                                              QFSKitHost.theme.accent.b, 0.28) : "transparent"
            radius: 4
        }
    }

    background: Rectangle {
        implicitHeight: Math.round(28 * QFZoom.value)
        color: QFSKitHost.theme.bg

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: QFSKitHost.theme.rim
        }
    }
}
