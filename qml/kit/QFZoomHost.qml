import QtQuick
import QtQuick.Controls
import Coinhall

// Whole-window zoom around a window's content. The content is laid out at the logical
// size (the space offered divided by the zoom, never below `minSize`) and scaled by
// the zoom from its top-left corner; when that is larger than the space offered it
// scrolls both ways, with scroll bars only then.
Item {
    id: root

    // The zoom factor; the stored one unless a caller binds another.
    property real zoom: QFZoom.value
    // The smallest logical size the content is laid out at.
    property size minSize: Qt.size(0, 0)
    // The content: children fill the logical area.
    default property alias content: canvas.data

    readonly property real logicalWidth: Math.max(minSize.width, width / zoom)
    readonly property real logicalHeight: Math.max(minSize.height, height / zoom)
    readonly property bool scrollsH: logicalWidth * zoom > width + 1
    readonly property bool scrollsV: logicalHeight * zoom > height + 1

    // Keeps the view inside the content after the zoom or the window changed.
    function keepInside() {
        flick.contentX = Math.max(0, Math.min(flick.contentWidth - flick.width, flick.contentX))
        flick.contentY = Math.max(0, Math.min(flick.contentHeight - flick.height, flick.contentY))
    }

    // Tool tips open above the zoomed content; the one shared tip takes the zoom itself.
    Component.onCompleted: {
        ToolTip.toolTip.transformOrigin = Popup.TopLeft
        ToolTip.toolTip.scale = Qt.binding(() => root.zoom)
    }

    onZoomChanged: keepInside()
    onWidthChanged: keepInside()
    onHeightChanged: keepInside()

    Flickable {
        id: flick

        anchors.fill: parent
        clip: true
        // Dragging belongs to the controls inside; scrolling comes from the wheel and the bars.
        interactive: false
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: root.logicalWidth * root.zoom
        contentHeight: root.logicalHeight * root.zoom

        ScrollBar.horizontal: SteadyScrollBar {
            shown: root.scrollsH
        }
        ScrollBar.vertical: SteadyScrollBar {
            shown: root.scrollsV
        }

        Item {
            id: canvas

            width: root.logicalWidth
            height: root.logicalHeight
            scale: root.zoom
            transformOrigin: Item.TopLeft
        }
    }

    // A wheel turn not taken by a list inside scrolls the zoomed content.
    WheelHandler {
        target: null
        enabled: root.scrollsH || root.scrollsV
        onWheel: event => {
            const dx = event.pixelDelta.x !== 0 ? event.pixelDelta.x : event.angleDelta.x / 2
            const dy = event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 2
            flick.contentX -= dx
            flick.contentY -= dy
            root.keepInside()
        }
    }
}
