import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The backups on the Accounts screen and the confirmation of a restore. Listing, counting
// and restoring are the core's (tests/core/store/backups_test.cpp); here: what the screen
// shows and that the confirmation restores only when confirmed.
TestCase {
    id: testCase

    name: "Backups"
    width: 1000
    height: 900
    visible: true
    when: windowShown

    readonly property LedgerBridge ledger: LedgerBridge { store: Store }

    // A backup that cannot be read (here a CSV under a backup's name) is listed as such,
    // and its key, named as it reads, is off.
    function test_anUnreadableBackupIsListedAndCannotBeRestored() {
        verify(ledger.exportCSV("file://" + Store.backupsFolder + "/coinhall-2025-03-04.json"))
        const screen = H.make(testCase, testCase, "AccountsScreen { anchors.fill: parent }")
        const line = H.named(screen, "backupLine")
        tryVerify(() => H.named(line, "backupFigures").text.endsWith(" · cannot be read"))
        const key = H.named(line, "restoreBackupKey")
        compare([H.named(line, "backupDate").text, key.Accessible.name, key.enabled], ["Mar 4, 2025", "Restore…", false])
        verify(line.Accessible.name.startsWith("Backup of Mar 4, 2025, "), line.Accessible.name)
    }

    // Escape leaves the books alone; Return asks the Store to restore (which finds no such backup here).
    function test_theConfirmationNamesTheDayAndRestoresOnlyOnReturn() {
        const backup = { day: "2025-03-05", dateText: "Mar 5, 2025", sizeText: "48 KB", countText: "312 transactions",
                         counted: true, readable: true }
        for (const key of [Qt.Key_Escape, Qt.Key_Return]) {
            Store.status = ""
            const sheet = H.make(testCase, testCase, "RestoreBackupSheet {}", { sheet: CHSheet.restoreBackup(backup) })
            const closed = H.spy(testCase, sheet, "done")
            compare(H.named(sheet, "restoreQuestion").text, "Replace your books with the backup of Mar 5, 2025?")
            tryVerify(() => sheet.activeFocus || H.key(sheet, "Restore").activeFocus)
            keyClick(key)
            compare([closed.count, Store.status], [1, key === Qt.Key_Escape ? "" : "There is no backup of Mar 5, 2025."])
        }
    }
}
