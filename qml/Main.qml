import QtQuick
import QtQuick.Controls
import Coinhall

// The one main window: the menus, and the root view inside the zoom host.
ApplicationWindow {
    id: root

    readonly property alias rootView: rootView
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

    // The kit's hooks: its colours come from the current look, its help opens the help window.
    function connectKit() {
        QFSKitHost.theme = lookTheme
        QFSKitHost.showHelp = page => rootView.openHelp()
    }

    Component.onCompleted: connectKit()

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

    // Ctrl and "=" zooms in too: on most keyboards "+" needs Shift.
    Shortcut {
        sequence: "Ctrl+="
        onActivated: QFZoom.zoomIn()
    }
}
