import QtQuick
import QtQuick.Layouts
import Coinhall

// The whole window's content: the header with the money keys, the read-outs and the
// theme picker; the "Console" sidebar that picks one of the seven screens; the
// current screen; the status line; the open sheet on top; and, while the books are
// locked, the lock overlay in place of all that. The help is a window of its own.
//
// Screens are given two signals, `openSheet(sheet)` and
// `showScreen(key)`; sheets are given their CHSheet value as `sheet` and close
// themselves with their `done` signal. Neither opens the other directly.
FocusScope {
    id: root

    // The key of the current screen; the dashboard at start.
    property string screen: "dashboard"
    // The open sheet (a CHSheet value), or null. Never the help: that opens its window.
    property var sheet: null

    // The seven screens in sidebar order: key, title (as shown) and symbol.
    readonly property var screens: [
        { key: "dashboard", title: "Dashboard", icon: "gauge.with.dots.needle.67percent" },
        { key: "register", title: "Transactions", icon: "list.bullet.rectangle" },
        { key: "bills", title: "Bills", icon: "doc.text" },
        { key: "royalties", title: "Royalties", icon: "music.note.list" },
        { key: "calendar", title: "Calendar", icon: "calendar" },
        { key: "reports", title: "Reports", icon: "chart.bar.xaxis" },
        { key: "accounts", title: "Accounts", icon: "building.columns" }
    ]
    readonly property alias sheetHost: host
    // The loader of the current screen; null while the books are locked.
    readonly property Loader screenView: desk.item ? desk.item.screenLoader : null
    // The help window, shared by every way into the help.
    readonly property alias helpWindow: helpWindow
    // The control that had the keyboard focus when the open sheet was asked for: it
    // gets the focus back when the sheet closes. Null when it is gone by then.
    property Item sheetOpener: null

    function openSheet(next: var) {
        if (next && next.kind === "help") {
            openHelp()
            return
        }
        if (next && sheet === null)
            sheetOpener = Window.window ? Window.window.activeFocusItem : null
        sheet = next
    }
    function closeSheet() {
        sheet = null
        const opener = sheetOpener
        sheetOpener = null
        if (opener && opener.visible && opener.enabled && isInside(opener, desk))
            opener.forceActiveFocus(Qt.OtherFocusReason)
        else
            focusScreen()
    }
    function isInside(item: Item, ancestor: Item): bool {
        for (let p = item; p; p = p.parent) {
            if (p === ancestor)
                return true
        }
        return false
    }
    // The help request of the Help menu, the kit and the sidebar: the help window at
    // its first chapter. It holds no data, so the lock lets it through.
    function openHelp() {
        helpWindow.show(0)
    }
    function showScreen(key: string) {
        if (screens.some(s => s.key === key))
            screen = key
    }
    function focusScreen() {
        if (screenView)
            screenView.forceActiveFocus()
    }

    // On the very first run, and only then, the help opens by itself.
    function welcomeOnce() {
        if (Prefs.welcomed)
            return
        Prefs.welcomed = true
        openHelp()
    }

    Component.onCompleted: welcomeOnce()

    // What the desktop asks for (its menu's actions, a reminder clicked), by the names
    // of --open. A sheet already open keeps what the user typed: it is not replaced.
    function openFromOutside(what: string) {
        if (what === "bills")
            showScreen("bills")
        else if (sheet !== null)
            return
        else if (what === "money-in" || what === "money-out")
            openSheet(CHSheet.newTx(what === "money-in"))
        else if (what === "import")
            openSheet(CHSheet.importCSV())
    }

    // While locked, the overlay draws its own ground: nothing but it shows.
    Rectangle {
        anchors.fill: parent
        visible: !Store.locked
        color: Looks.current.bg
    }

    CHHelpWindow {
        id: helpWindow
    }

    // Everything of the books: made only once they are open, so while they are locked
    // no amount, name or date exists to be drawn, reached by the keyboard or read out.
    Loader {
        id: desk

        objectName: "desk"
        anchors.fill: parent
        active: !Store.locked && !Store.loading
        visible: active
        focus: true
        // It takes no input while a sheet is open.
        enabled: root.sheet === null
        sourceComponent: deskComponent
        // The books just opened (or the view was made on open books): the keyboard goes to the screen.
        onLoaded: root.focusScreen()
    }

    Component {
        id: deskComponent

        FocusScope {
            readonly property alias screenLoader: screenLoader

            focus: true

            ColumnLayout {
                anchors.fill: parent
                anchors.margins: Tokens.spaceM
                spacing: Tokens.spaceM

                Header {
                    Layout.fillWidth: true
                    onOpenSheet: next => root.openSheet(next)
                }

                RowLayout {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    spacing: Tokens.spaceM

                    ConsoleSidebar {
                        Layout.preferredWidth: 212
                        Layout.fillHeight: true
                        screens: root.screens
                        screen: root.screen
                        onScreenChosen: key => root.screen = key
                        onOpenSheet: next => root.openSheet(next)
                        onHelpRequested: root.openHelp()
                    }

                    ScreenHost {
                        id: screenLoader

                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        focus: true
                        screen: root.screen
                        onOpenSheet: next => root.openSheet(next)
                        onShowScreen: key => root.showScreen(key)
                    }
                }

                RowLayout {
                    Layout.fillWidth: true
                    // Keeps its line even when there is nothing to say, and when the key shows.
                    Layout.preferredHeight: Math.ceil(fontMetrics.height) + 2 * Tokens.spaceXS
                    spacing: Tokens.spaceS

                    CaptionText {
                        objectName: "statusLine"
                        Layout.fillWidth: true
                        Layout.leftMargin: Tokens.spaceXS
                        text: Store.status
                        elide: Text.ElideRight

                        FontMetrics {
                            id: fontMetrics

                            font.family: Tokens.textFamily
                            font.pointSize: Tokens.pt(Tokens.captionSize)
                        }
                    }

                    // After a deletion, for a few seconds: the way back one click away.
                    Key {
                        objectName: "statusUndoKey"
                        Layout.preferredHeight: parent.height
                        implicitHeight: parent.height
                        topPadding: 0
                        bottomPadding: 0
                        title: "Undo"
                        visible: undoOffer.running
                        onClicked: {
                            undoOffer.stop()
                            Store.undo()
                        }
                    }

                    Timer {
                        id: undoOffer

                        interval: 8000
                    }

                    Connections {
                        target: Store

                        // The offer follows the deletion's own status line, and goes with it.
                        function onStatusChanged() {
                            undoOffer.stop()
                        }
                        function onUndoOffered() {
                            undoOffer.restart()
                        }
                    }
                }
            }
        }
    }

    // Bank files dropped on the window open the import with them.
    DropArea {
        anchors.fill: parent
        enabled: !Store.locked && !Store.loading && root.sheet === null
        onDropped: drop => {
            if (!drop.hasUrls)
                return
            drop.acceptProposedAction()
            // A copy: the event's list is gone once the event is, before the sheet reads it.
            root.openSheet(CHSheet.importCSV(Array.from(drop.urls)))
        }
    }

    SheetHost {
        id: host

        objectName: "sheetHost"
        anchors.fill: parent
        sheet: Store.locked || Store.loading ? null : root.sheet
        onDone: root.closeSheet()
    }

    LockOverlay {
        id: lock

        objectName: "lockOverlay"
        anchors.fill: parent
        visible: Store.locked
        focus: Store.locked
    }

    // A large money file still being read (once the books are unlocked).
    LoadingOverlay {
        objectName: "loadingOverlay"
        anchors.fill: parent
        visible: Store.loading && !Store.locked
        focus: visible
    }

}
