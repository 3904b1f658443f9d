import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A screen's single scrolling column: the children stack top to bottom at the full
// width, the wheel and the scroll bar move them, and a control that takes the
// keyboard focus below or above the view is scrolled into it.
Flickable {
    id: root

    // The rows of the screen, top to bottom.
    default property alias rows: column.data
    property alias spacing: column.spacing

    // Scrolls just enough to show `item` (a descendant) whole, if it fits.
    function reveal(item: Item) {
        if (!item || !isInside(item))
            return
        const top = item.mapToItem(column, 0, 0).y
        const bottom = top + item.height
        if (top < contentY)
            contentY = Math.max(0, top - Tokens.spaceM)
        else if (bottom > contentY + height)
            contentY = Math.min(Math.max(0, contentHeight - height), bottom - height + Tokens.spaceM)
    }

    function isInside(item: Item): bool {
        for (let p = item; p; p = p.parent) {
            if (p === column)
                return true
        }
        return false
    }

    contentWidth: width
    contentHeight: column.implicitHeight
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    // Dragging belongs to the controls; the wheel and the bar scroll.
    interactive: false

    ScrollBar.vertical: ScrollBar {
        policy: root.contentHeight > root.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => {
            const step = event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 120 * 60
            root.contentY = Math.max(0, Math.min(Math.max(0, root.contentHeight - root.height), root.contentY - step))
        }
    }

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            root.reveal(root.Window.window.activeFocusItem)
        }
    }

    ColumnLayout {
        id: column

        width: root.width - (root.ScrollBar.vertical.visible ? root.ScrollBar.vertical.width : 0)
        spacing: Tokens.spaceM
    }
}
