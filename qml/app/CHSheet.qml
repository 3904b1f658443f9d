pragma Singleton
import QtQuick

// The modal sheets the root view can show, at most one at a time. A sheet is a frozen
// plain object: `kind` (one of `kinds`), `identity` (tells two sheets apart) and,
// for the cases that carry one, `income` or `record` (a copy of the record it edits).
QtObject {
    id: root

    // Every case, in the order the root view's table lists them.
    readonly property var kinds: ["newTx", "editTx", "editBill", "payBill", "editRoyalty", "receiveRoyalty",
        "editAccount", "transfer", "newBill", "newRoyalty", "newAccount", "importCSV", "help", "settings",
        "restoreBackup", "passphrase"]

    // A new transaction: money in when `income`, else money out.
    function newTx(income: bool): var {
        return make("newTx", { income: income }, income ? "in" : "out")
    }
    // A line to change; a side of a transfer opens the transfer with both its sides.
    function editTx(tx: var): var {
        return withRecord(tx && tx.kind === "transfer" ? "transfer" : "editTx", tx)
    }
    function editBill(bill: var): var {
        return withRecord("editBill", bill)
    }
    function payBill(bill: var): var {
        return withRecord("payBill", bill)
    }
    function editRoyalty(royalty: var): var {
        return withRecord("editRoyalty", royalty)
    }
    function receiveRoyalty(royalty: var): var {
        return withRecord("receiveRoyalty", royalty)
    }
    function editAccount(account: var): var {
        return withRecord("editAccount", account)
    }
    // A new transfer; the transfer sheet with a `record` (a side of one) changes that transfer.
    function transfer(): var {
        return make("transfer", {}, "")
    }
    function newBill(): var {
        return make("newBill", {}, "")
    }
    function newRoyalty(): var {
        return make("newRoyalty", {}, "")
    }
    function newAccount(): var {
        return make("newAccount", {}, "")
    }
    // The import, with the files dropped on the window when there are some (file addresses).
    function importCSV(files: var): var {
        return make("importCSV", { files: files || [] }, "")
    }
    // The help; the root view opens the help window for it rather than a sheet.
    function help(): var {
        return make("help", {}, "")
    }
    function settings(): var {
        return make("settings", {}, "")
    }
    // The confirmation of a restore: `record` is the backup as AccountsBridge.backups lists it.
    function restoreBackup(backup: var): var {
        return make("restoreBackup", { record: backup }, backup && backup.day !== undefined ? String(backup.day) : "")
    }

    // Encryption of the books: `mode` "on" (encrypt), "change" (a new passphrase) or "off".
    function passphrase(mode: string): var {
        return make("passphrase", { mode: mode }, mode)
    }

    function withRecord(kind: string, record: var): var {
        return make(kind, { record: record }, record && record.id !== undefined ? String(record.id) : "")
    }

    function make(kind: string, fields: var, detail: string): var {
        const sheet = Object.assign({ kind: kind, identity: detail === "" ? kind : kind + ":" + detail }, fields)
        return Object.freeze(sheet)
    }
}
