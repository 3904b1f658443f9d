import QtQuick
import Coinhall

// Shows the open sheet (a CHSheet value) over a dimmed window, centred, and keeps
// every click and wheel turn away from what lies beneath. The help is not among the
// sheets: it has a window of its own (CHHelpWindow). The sheet's view closes
// itself through its `done` signal, which ends here as `done`.
//
// The sheet stays inside the part of the host the window shows: zoomed in, the host
// is larger than the window and scrolls in the zoom host, and a sheet centred on the
// whole host would lie partly off-screen. A sheet taller or wider than that part is
// made smaller; its rows then scroll between its title and its keys.
FocusScope {
    id: root

    // The sheet to show; null shows nothing.
    property var sheet: null
    // The shown sheet's view, null when none is open.
    readonly property Item view: loader.item

    // The part of the host that the window shows, in the host's coordinates.
    property rect shownArea: Qt.rect(0, 0, width, height)
    // The nearest scrolling view the host lies in (the zoom host's), or null.
    property Item scroller: null

    // The sheet's view asked to close.
    signal done

    // The host's rectangle cut by every clipping item above it and by the window.
    function measureShownArea() {
        let left = 0, top = 0, right = width, bottom = height
        for (let p = parent; p; p = p.parent) {
            if (!p.clip && p.parent)
                continue
            const a = mapFromItem(p, 0, 0)
            const b = mapFromItem(p, p.width, p.height)
            left = Math.max(left, Math.min(a.x, b.x))
            top = Math.max(top, Math.min(a.y, b.y))
            right = Math.min(right, Math.max(a.x, b.x))
            bottom = Math.min(bottom, Math.max(a.y, b.y))
        }
        const w = Math.max(0, right - left), h = Math.max(0, bottom - top)
        if (left !== shownArea.x || top !== shownArea.y || w !== shownArea.width || h !== shownArea.height)
            shownArea = Qt.rect(left, top, w, h)
    }

    function findScroller(): Item {
        for (let p = parent; p; p = p.parent) {
            if (p.contentItem !== undefined && p.contentY !== undefined && p.clip)
                return p
        }
        return null
    }

    // The view for each case of CHSheet.
    function componentFor(kind: string): Component {
        switch (kind) {
        case "newTx":
        case "editTx":
            return txEditor
        case "transfer":
            return transferEditor
        case "newBill":
        case "editBill":
            return billEditor
        case "payBill":
            return payBill
        case "newRoyalty":
        case "editRoyalty":
            return royaltyEditor
        case "receiveRoyalty":
            return receiveRoyalty
        case "newAccount":
        case "editAccount":
            return accountEditor
        case "importCSV":
            return importSheet
        case "settings":
            return settingsSheet
        case "restoreBackup":
            return restoreBackup
        case "passphrase":
            return passphraseSheet
        }
        console.warn("SheetHost: no sheet for", kind)
        return null
    }

    // A new sheet gets a new view, even when it is of the same kind as the last one.
    onSheetChanged: {
        loader.sourceComponent = null
        if (sheet)
            loader.sourceComponent = componentFor(sheet.kind)
    }

    visible: loader.item !== null

    Component.onCompleted: {
        scroller = findScroller()
        measureShownArea()
    }
    onWidthChanged: Qt.callLater(measureShownArea)
    onHeightChanged: Qt.callLater(measureShownArea)
    onVisibleChanged: measureShownArea()

    Connections {
        target: root.scroller
        function onContentXChanged() { Qt.callLater(root.measureShownArea) }
        function onContentYChanged() { Qt.callLater(root.measureShownArea) }
        function onWidthChanged() { Qt.callLater(root.measureShownArea) }
        function onHeightChanged() { Qt.callLater(root.measureShownArea) }
        function onContentWidthChanged() { Qt.callLater(root.measureShownArea) }
        function onContentHeightChanged() { Qt.callLater(root.measureShownArea) }
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.55)
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    // The sheet is centred on the part of the host that the window shows.
    Item {
        id: shown

        x: root.shownArea.x
        y: root.shownArea.y
        width: root.shownArea.width
        height: root.shownArea.height
    }

    Loader {
        id: loader

        // The room kept free around the sheet.
        readonly property real margin: Tokens.spaceM

        anchors.centerIn: shown
        focus: true
        onLoaded: {
            // The width the sheet asks for; it gets less when the window shows less.
            const view = item
            const wanted = view.width
            view.width = Qt.binding(() => Math.min(wanted, root.shownArea.width - 2 * margin))
            view.height = Qt.binding(() => Math.min(view.implicitHeight, root.shownArea.height - 2 * margin))
            view.sheet = root.sheet
            view.done.connect(root.done)
            view.forceActiveFocus()
        }
    }

    Component {
        id: txEditor

        TxEditor {}
    }
    Component {
        id: transferEditor

        TransferEditor {}
    }
    Component {
        id: billEditor

        BillEditor {}
    }
    Component {
        id: payBill

        PayBillView {}
    }
    Component {
        id: royaltyEditor

        RoyaltyEditor {}
    }
    Component {
        id: receiveRoyalty

        ReceiveRoyaltyView {}
    }
    Component {
        id: accountEditor

        AccountEditor {}
    }
    Component {
        id: importSheet

        ImportSheet {}
    }
    Component {
        id: restoreBackup

        RestoreBackupSheet {}
    }
    Component {
        id: passphraseSheet

        PassphraseSheet {}
    }
    // Kept for a settings panel; nothing opens it yet.
    Component {
        id: settingsSheet

        SheetFrame {
            property var sheet
            signal done

            title: "Settings"
            canSave: false
            onCancel: done()

            EmptyNote {
                text: "The lock and backup settings are on the Accounts screen."
            }
        }
    }
}
