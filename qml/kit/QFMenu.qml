import QtQuick
import QtQuick.Controls
import Coinhall

// A menu in the kit's colours; its items and submenus are drawn as QFMenuItem.
// Menus open above the zoom host, so they follow the zoom by their own sizes.
Menu {
    id: root

    font.pointSize: Tokens.pt(13) * QFZoom.value
    // As wide as its widest item, whose text may change while the menu is open
    // ("Undo Import of 312 lines").
    width: {
        let widest = implicitWidth
        for (let i = 0; i < count; ++i) {
            const item = itemAt(i)
            if (item)
                widest = Math.max(widest, item.implicitWidth + leftPadding + rightPadding)
        }
        return widest
    }

    delegate: QFMenuItem {}

    background: Rectangle {
        implicitWidth: Math.round(220 * QFZoom.value)
        radius: 6
        color: QFSKitHost.theme.panelBottom
        border.width: 1
        border.color: QFSKitHost.theme.rim
    }
}
