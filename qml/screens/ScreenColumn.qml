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
    // Whether the bar shows (and takes its width from the rows), settled after the
    // layout pass that changed the rows' height: narrowing the rows from inside that
    // pass made Qt 6.4 arrange nested layouts before they had caught up with their
    // rows, and the window died on the read of a row already gone.
    property bool barShown: false

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

    // At its end the column hands a wheel turn to the scrolling view around it (the
    // zoomed window), which would not get it otherwise: the handler takes every turn.
    function passOn(step: real) {
        for (let p = parent; p; p = p.parent) {
            if (p.contentItem !== undefined && p.contentY !== undefined && p.clip) {
                p.contentY = Math.max(0, Math.min(Math.max(0, p.contentHeight - p.height), p.contentY - step))
                return
            }
        }
    }

    function settleBar() {
        barShown = contentHeight > height
    }

    contentWidth: width
    contentHeight: column.implicitHeight
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    // Dragging belongs to the controls; the wheel and the bar scroll.
    interactive: false

    onContentHeightChanged: Qt.callLater(settleBar)
    onHeightChanged: Qt.callLater(settleBar)

    ScrollBar.vertical: SteadyScrollBar {
        shown: root.barShown
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => {
            const step = event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 120 * 60
            const next = Math.max(0, Math.min(Math.max(0, root.contentHeight - root.height), root.contentY - step))
            if (next !== root.contentY)
                root.contentY = next
            else
                root.passOn(step)
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

        width: root.width - (root.barShown ? root.ScrollBar.vertical.width : 0)
        spacing: Tokens.spaceM
    }
}
