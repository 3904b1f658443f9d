import QtQuick
import QtQuick.Window
import Coinhall

// The built-in manual in a window of its own, beside the main window. There is one;
// closing it only hides it, and the next `show` brings the same window back. It draws
// with the current look and the window-wide zoom, and it holds no money data, so it
// may open while the books are locked.
Window {
    id: root

    // The chapter the help opens on.
    property int startPage: 0
    // The help view inside.
    readonly property alias view: help

    // Opens the help on chapter `page`: shows the window (centred on the screen the
    // first time), brings it to the front and gives it the keyboard.
    function show(page: int) {
        startPage = page
        help.topic = page
        if (!visible) {
            // The content is 860 by 560 at 100%; a zoomed view gets a window to match.
            width = Math.round(860 * QFZoom.value)
            height = Math.round(560 * QFZoom.value)
            x = Screen.virtualX + Math.max(0, (Screen.width - width) / 2)
            y = Screen.virtualY + Math.max(0, (Screen.height - height) / 2)
        }
        visible = true
        // Windows drawn off screen have nothing to be raised above.
        if (Qt.platform.pluginName !== "offscreen")
            raise()
        requestActivate()
        help.forceActiveFocus()
    }

    title: "QFS Coinhall Help"
    width: 860
    height: 560
    minimumWidth: 480
    minimumHeight: 320
    color: Looks.current.bg

    // Closed, it hands the keyboard back to the window it belongs to, which a desktop
    // without a window manager would otherwise leave without focus.
    onVisibleChanged: {
        if (!visible && transientParent)
            transientParent.requestActivate()
    }

    QFZoomHost {
        // The window's own size: its content item can lag behind a resize made while hidden.
        width: root.width
        height: root.height
        minSize: Qt.size(700, 460)

        HelpView {
            id: help

            objectName: "helpView"
            anchors.fill: parent
            startPage: root.startPage
            focus: true
            onDone: root.close()
        }
    }
}
