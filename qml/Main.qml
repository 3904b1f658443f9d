import QtQuick
import QtQuick.Controls
import Coinhall

// The one main window: the menus, and the root view inside the zoom host.
ApplicationWindow {
    id: root

    readonly property alias rootView: rootView
    readonly property alias editMenu: editMenu
    readonly property alias themeMenu: themeMenu
    readonly property alias helpMenu: helpMenu
    readonly property alias aboutPanel: about
    readonly property CHHelpWindow helpWindow: rootView.helpWindow

    width: 1380
    height: 900
    minimumWidth: 640
    minimumHeight: 480
    visible: true
    title: HelpBook.appName
    color: Looks.current.bg

    // The kit's help hook opens the help window.
    function connectKit() {
        QFSKitHost.showHelp = page => rootView.openHelp()
    }

    Component.onCompleted: connectKit()

    // The control that takes the keyboard focus is scrolled into view in every
    // scrolling view it lies in, innermost first: a screen's column, a sheet's rows,
    // and the zoomed window itself.
    function revealFocus() {
        const item = activeFocusItem
        if (!item)
            return
        for (let view = item.parent; view; view = view.parent) {
            if (view.contentItem === undefined || view.contentY === undefined || !view.clip)
                continue
            const start = item.mapToItem(view, 0, 0)
            const end = item.mapToItem(view, item.width, item.height)
            view.contentX = revealedAt(view.contentX, start.x, end.x, view.width, view.originX, view.contentWidth)
            view.contentY = revealedAt(view.contentY, start.y, end.y, view.height, view.originY, view.contentHeight)
        }
    }

    // The scroll position along one axis that shows the span from `from` to `to` (in
    // the view's own coordinates): whole when it fits, else from its start when none
    // of it shows. Unchanged when nothing needs to move.
    function revealedAt(position: real, from: real, to: real, size: real, origin: real, extent: real): real {
        const margin = 8
        let next = position
        if (to - from + 2 * margin <= size) {
            if (from < 0)
                next = position + from - margin
            else if (to > size)
                next = position + to - size + margin
        } else if (to <= 0 || from >= size) {
            next = position + from - margin
        }
        if (next === position)
            return position
        return Math.max(origin, Math.min(origin + extent - size, next))
    }

    onActiveFocusItemChanged: Qt.callLater(revealFocus)

    // The kit draws with the current look: the looks are the window's one source of
    // colours, and the kit's own theme stands only where no application sets one.
    Binding {
        target: QFSKitHost
        property: "theme"
        value: lookTheme
    }

    QFKitTheme {
        id: lookTheme

        bg: Looks.current.bg
        text: Looks.current.text
        dim: Looks.current.muted
        rim: Looks.current.line
        accent: Looks.current.accent
        panelTop: Looks.current.panelTop
        panelBottom: Looks.current.panelBottom
    }

    menuBar: QFMenuBar {
        QFMenu {
            title: "&File"

            Action {
                text: "Quit"
                shortcut: StandardKey.Quit
                onTriggered: Qt.quit()
            }
        }

        // Undo and redo act on the books; while a sheet is open they stand aside, and
        // Ctrl+Z in its fields undoes the typing.
        QFMenu {
            id: editMenu

            title: "&Edit"

            Action {
                text: Store.undoText
                enabled: Store.canUndo && rootView.sheet === null
                shortcut: "Ctrl+Z"
                onTriggered: Store.undo()
            }
            Action {
                id: redoAction

                text: Store.redoText
                enabled: Store.canRedo && rootView.sheet === null
                shortcut: "Ctrl+Shift+Z"
                onTriggered: Store.redo()
            }
        }

        QFMenu {
            id: themeMenu

            title: "&Theme"

            Instantiator {
                model: Looks.all

                QFMenuItem {
                    required property var modelData

                    text: modelData.name
                    checkable: true
                    checked: Looks.current.id === modelData.id
                    onTriggered: {
                        Looks.choose(modelData.id)
                        // A click toggles the item by itself; the look decides what is checked.
                        checked = Qt.binding(() => Looks.current.id === modelData.id)
                    }
                }

                onObjectAdded: (index, object) => themeMenu.insertItem(index, object)
                onObjectRemoved: (index, object) => themeMenu.removeItem(object)
            }
        }

        QFZoomCommands {}

        QFMenu {
            id: helpMenu

            title: "&Help"

            // The help and the about panel show no data: they work while the books are locked too.
            Action {
                text: "QFS Coinhall Help"
                shortcut: StandardKey.HelpContents
                onTriggered: QFSKitHost.openHelp("")
            }
            Action {
                text: "Quillfern Website"
                onTriggered: Qt.openUrlExternally(HelpBook.website)
            }
            QFMenuSeparator {}
            Action {
                text: "About QFS Coinhall"
                onTriggered: about.show()
            }
        }
    }

    QFZoomHost {
        anchors.fill: parent
        minSize: Qt.size(1180, 760)

        RootView {
            id: rootView

            anchors.fill: parent
            focus: true
        }
    }

    AboutPanel {
        id: about
    }

    // Redo answers Ctrl+Y too, as it does in most programs.
    Shortcut {
        sequence: "Ctrl+Y"
        enabled: redoAction.enabled
        onActivated: redoAction.trigger()
    }

    // Ctrl and "=" zooms in too: on most keyboards "+" needs Shift.
    Shortcut {
        sequence: "Ctrl+="
        onActivated: QFZoom.zoomIn()
    }
}
