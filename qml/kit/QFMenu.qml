import QtQuick
import QtQuick.Controls
import Coinhall

// A menu in the kit's colours; its items and submenus are drawn as QFMenuItem.
// Menus open above the zoom host, so they follow the zoom by their own sizes.
Menu {
    id: root

    font.pointSize: Tokens.pt(13) * QFZoom.value

    delegate: QFMenuItem {}

    background: Rectangle {
        implicitWidth: Math.round(220 * QFZoom.value)
        radius: 6
        color: QFSKitHost.theme.panelBottom
        border.width: 1
        border.color: QFSKitHost.theme.rim
    }
}
