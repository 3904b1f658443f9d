import QtQuick
import QtQuick.Controls
import Coinhall

// A menu in the kit's colours; its items and submenus are drawn as QFMenuItem.
Menu {
    id: root

    delegate: QFMenuItem {}

    background: Rectangle {
        implicitWidth: 220
        radius: 6
        color: QFSKitHost.theme.panelBottom
        border.width: 1
        border.color: QFSKitHost.theme.rim
    }
}
