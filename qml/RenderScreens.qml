import QtQuick
import Coinhall

// The window of `coinhall --render-screens`: the main window, driven through every
// look, four zooms (85%, 100%, 150%, 200%), every screen and every sheet, the lock,
// the about panel and the help window, each state saved as a picture by `shots` (a
// C++ object with save(window, name) and finish(count)).
Main {
    id: root

    required property QtObject shots

    // One entry per picture: look id, zoom in per cent, and the screen key or the sheet.
    property var jobs: []
    property int next: 0
    // Frames the help window has drawn since it was last shown.
    property int helpFrames: 0
    // Whether the pictures were planned and begun (start()).
    property bool started: false

    // The demo Book's own records for the sheets that carry one, as the screens hand
    // them over: the newest line, the first bill, the first royalty still expected, the
    // first account and the newest backup.
    property string newestTxId: ""
    readonly property var samples: ({
        tx: ledgerData.transaction(newestTxId),
        bill: billsData.active[0],
        royalty: royaltiesData.expected[0],
        account: accountsData.accounts[0],
        backup: accountsData.backups[0]
    })

    LedgerBridge {
        id: ledgerData

        store: Store
    }
    BillsBridge {
        id: billsData

        store: Store
    }
    RoyaltiesBridge {
        id: royaltiesData

        store: Store
    }
    AccountsBridge {
        id: accountsData

        store: Store
        Component.onCompleted: refreshBackups()
        onBackupsChanged: Qt.callLater(root.start)
    }
    // The newest line of the register, read through its first row.
    Repeater {
        model: TransactionListModel {
            store: Store
        }

        Item {
            required property int index
            required property string txId

            Component.onCompleted: {
                if (index === 0)
                    root.newestTxId = txId
            }
        }
    }

    function sheetViews(): var {
        return [
            { name: "sheet-newTx-in", sheet: CHSheet.newTx(true) },
            { name: "sheet-newTx-out", sheet: CHSheet.newTx(false) },
            { name: "sheet-editTx", sheet: CHSheet.editTx(samples.tx) },
            { name: "sheet-editBill", sheet: CHSheet.editBill(samples.bill) },
            { name: "sheet-payBill", sheet: CHSheet.payBill(samples.bill) },
            { name: "sheet-editRoyalty", sheet: CHSheet.editRoyalty(samples.royalty) },
            { name: "sheet-receiveRoyalty", sheet: CHSheet.receiveRoyalty(samples.royalty) },
            { name: "sheet-editAccount", sheet: CHSheet.editAccount(samples.account) },
            { name: "sheet-transfer", sheet: CHSheet.transfer() },
            { name: "sheet-newBill", sheet: CHSheet.newBill() },
            { name: "sheet-newRoyalty", sheet: CHSheet.newRoyalty() },
            { name: "sheet-newAccount", sheet: CHSheet.newAccount() },
            { name: "sheet-importCSV", sheet: CHSheet.importCSV() },
            { name: "sheet-settings", sheet: CHSheet.settings() },
            { name: "sheet-restoreBackup", sheet: CHSheet.restoreBackup(samples.backup) },
            { name: "sheet-passphrase-on", sheet: CHSheet.passphrase("on") },
            { name: "sheet-passphrase-change", sheet: CHSheet.passphrase("change") }
        ]
    }

    function plan() {
        const list = []
        for (const look of Looks.all) {
            for (const zoom of [85, 100, 150, 200]) {
                for (const screen of rootView.screens)
                    list.push({ look: look.id, zoom: zoom, name: screen.key, screen: screen.key, sheet: null })
                for (const view of sheetViews())
                    list.push({ look: look.id, zoom: zoom, name: view.name, screen: "dashboard", sheet: view.sheet })
                list.push({ look: look.id, zoom: zoom, name: "locked", screen: "dashboard", sheet: null, locked: true })
                list.push({ look: look.id, zoom: zoom, name: "about", screen: "dashboard", sheet: null, about: true })
                // The help window on its first chapter, and on the longest one to see it scroll.
                list.push({ look: look.id, zoom: zoom, name: "help", screen: "dashboard", sheet: null, help: 0 })
                list.push({ look: look.id, zoom: zoom, name: "help-themes", screen: "dashboard", sheet: null, help: 9 })
            }
        }
        jobs = list
    }

    // Puts the window into the next job's state; the picture is taken once it is drawn.
    function step() {
        if (next >= jobs.length) {
            Looks.choose("studio")
            QFZoom.actualSize()
            shots.finish(jobs.length)
            return
        }
        const job = jobs[next]
        Looks.choose(job.look)
        QFZoom.setLevel(job.zoom)
        // The window grows with the zoom, so the whole root view shows at every zoom.
        width = 1380 * job.zoom / 100
        height = 900 * job.zoom / 100
        rootView.screen = job.screen
        rootView.sheet = job.sheet
        lockPreview.visible = job.locked === true
        if (job.about === true)
            aboutPanel.show()
        else
            aboutPanel.close()
        // Closed first, so that each picture's window is sized for its zoom.
        helpWindow.close()
        helpFrames = 0
        if (job.help !== undefined)
            helpWindow.show(job.help)
        settle.restart()
    }

    // The lock overlay as the locked books show it (the demo books themselves stay open).
    LockOverlay {
        id: lockPreview

        parent: root.rootView
        anchors.fill: parent
        visible: false
    }

    Connections {
        target: root.helpWindow

        function onFrameSwapped() {
            root.helpFrames += 1
            // Nothing in it moves, so the second frame is asked for.
            if (root.helpFrames < 2)
                root.helpWindow.update()
        }
    }

    // Lets layouts, loaders and bindings settle before the picture.
    Timer {
        id: settle

        interval: 30
        onTriggered: {
            const job = root.jobs[root.next]
            // A window just shown lays itself out with its first frames; grabbed sooner, it shows the old layout.
            if (job.help !== undefined && root.helpFrames < 2) {
                restart()
                return
            }
            const window = job.about === true ? root.aboutPanel : job.help !== undefined ? root.helpWindow : root
            root.shots.save(window, job.look + "-" + job.zoom + "-" + job.name)
            root.next += 1
            root.step()
        }
    }

    // Plans and starts once everything is made and the backups are counted, so that the
    // samples above are read from the demo Book and the backups show their counts in
    // every picture.
    function start() {
        if (started || !accountsData.backups.every(b => b.counted))
            return
        started = true
        plan()
        step()
    }

    Component.onCompleted: Qt.callLater(start)
}
