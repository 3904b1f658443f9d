import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The Edit menu: each kind of change undone and redone as a user does it, the offer
// after a deletion, and Ctrl+Z in a sheet's field. That undo gives the exact Book
// back is tests/core/store's.
TestCase {
    id: testCase

    name: "Undo"
    when: windowShown

    readonly property LedgerBridge ledger: LedgerBridge { store: Store }
    readonly property BillsBridge bills: BillsBridge { store: Store }
    readonly property RoyaltiesBridge royalties: RoyaltiesBridge { store: Store }
    readonly property AccountsBridge accounts: AccountsBridge { store: Store }
    readonly property TransactionListModel lines: TransactionListModel { store: Store }

    function init() {
        Prefs.welcomed = true
    }
    function makeWindow() {
        const window = H.make(testCase, null, "Main {}")
        waitForRendering(window.contentItem)
        return window
    }
    // What the screens show of the books, in one text.
    function seen() {
        return JSON.stringify([Store.totalText, [...Array(lines.count).keys()].map(row => lines.get(row)), bills.active, bills.recentPayments, royalties.expected,
                               royalties.received, accounts.accounts, accounts.budgets])
    }
    function choose(menu, index) {
        menu.open()
        tryCompare(menu, "opened", true)
        waitForRendering(menu.itemAt(index))
        mouseClick(menu.itemAt(index))
        tryCompare(menu, "visible", false)
    }
    function spend(payee) {
        verify(ledger.saveTransaction({ income: false, date: ledger.now(), amount: "4.50", payee: payee,
                                        category: "Dining", accountId: ledger.firstAccountId(), cleared: true }))
    }
    function lineOf(payee) {
        for (let row = 0; row < lines.count; ++row)
            if (lines.get(row).payee === payee)
                return lines.idAt(row)
        return ""
    }
    function firstBill() { return bills.active[0].id }
    function firstRoyalty() { return royalties.expected.concat(royalties.received)[0].id }

    function test_everyKindOfChangeUndoneAndRedoneFromTheEditMenu() {
        const window = makeWindow()
        const menu = window.editMenu
        const account = () => ledger.firstAccountId()
        const changes = [
            ["Spent $4.50 · Corner cafe", () => spend("Corner cafe")],
            ["Mark $4.50 · Corner cafe pending", () => ledger.setCleared(lineOf("Corner cafe"), false)],
            ["Spent $4.50 · Bakery", () => ledger.saveTransaction(Object.assign(ledger.transaction(lineOf("Corner cafe")),
                                                                               { payee: "Bakery", amount: "4.50" }))],
            ["Moved $20.00", () => ledger.transfer(account(), accounts.accounts[1].id, "20", ledger.now(), "")],
            ["Delete $4.50 · Bakery", () => ledger.deleteTransaction(lineOf("Bakery"))],
            ["Saved bill Rent", () => bills.saveBill(Object.assign(bills.newBill(), { name: "Rent", amount: "900", repeats: "Monthly" }))],
            ["Paid Rent: $900.00", () => bills.pay(firstBill(), "900", ledger.now(), account())],
            ["Skip Rent", () => bills.skip(firstBill())],
            ["Delete bill Rent", () => bills.deleteBill(firstBill())],
            ["Save royalty BMI", () => royalties.saveRoyalty(Object.assign(royalties.newRoyalty(),
                                                                           { payer: "BMI", amount: "50" }))],
            ["Logged $50.00 from BMI", () => royalties.receive(firstRoyalty(), "50", ledger.now(), account())],
            ["Delete royalty BMI", () => royalties.deleteRoyalty(firstRoyalty())],
            ["Add account Cash box", () => accounts.saveAccount("", "Cash box", "Cash", "10", false)],
            ["Close account Cash box", () => accounts.saveAccount(accounts.accounts[2].id, "Cash box", "Cash", "10",
                                                                  true)],
            ["Budget for Dining out", () => accounts.commitBudget(accounts.budgets.find(
                                                                     b => b.name === "Dining out").index, "80")],
        ]
        for (const [what, change] of changes) {
            const before = seen()
            change()
            const after = seen()
            verify(after !== before, what)
            compare(menu.itemAt(0).text, "Undo " + what)
            choose(menu, 0)
            compare([seen(), Store.status], [before, "Undone: " + what + "."], what)
            compare(menu.itemAt(1).text, "Redo " + what)
            keyClick(Qt.Key_Y, Qt.ControlModifier)
            compare(seen(), after, what)
        }
        // An account without lines deleted, then undone by Ctrl+Z.
        const before = seen()
        verify(accounts.deleteAccount(accounts.accounts[2].id))
        keyClick(Qt.Key_Z, Qt.ControlModifier)
        compare(seen(), before)
        keyClick(Qt.Key_Z, Qt.ControlModifier | Qt.ShiftModifier)
        verify(seen() !== before)
    }

    // A deletion offers its undo beside the status line until the next message.
    function test_deletionOffersUndoInTheStatusLine() {
        const view = makeWindow().rootView
        spend("Kiosk")
        const count = lines.count
        verify(ledger.deleteTransaction(lines.idAt(0)))
        const offer = H.named(view, "statusUndoKey")
        compare([H.texts(view, "statusLine")[0], offer.visible, offer.Accessible.name],
                ["Deleted $4.50 · Kiosk.", true, "Undo"])
        mouseClick(offer)
        compare([lines.count, offer.visible], [count, false])
    }

    // In an open sheet Ctrl+Z undoes typing; the books wait.
    function test_undoInASheetsFieldUndoesTyping() {
        const window = makeWindow()
        spend("Deli")
        const count = lines.count
        mouseClick(H.named(window.rootView, "moneyOutKey"))
        tryVerify(() => window.rootView.sheetHost.view !== null)
        const field = H.first(window.rootView.sheetHost.view, c => c.objectName === "payeeField")
        field.forceActiveFocus()
        H.type(testCase, "Tea")
        keyClick(Qt.Key_Z, Qt.ControlModifier)
        compare([field.text, lines.count, window.editMenu.itemAt(0).enabled], ["", count, false])
        keyClick(Qt.Key_Escape)
        tryCompare(window.rootView, "sheet", null)
        verify(window.editMenu.itemAt(0).enabled)
    }
}
