import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The register and the transaction sheets. What saving stores and says, the category
// guesses and the filters are tests/bridge's.
TestCase {
    id: testCase

    name: "Transactions"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    readonly property LedgerBridge ledger: LedgerBridge { store: Store }
    readonly property TransactionListModel everything: TransactionListModel { store: Store }

    function addLine(income: bool, amount: string, payee: string, category: string, hoursBefore: int) {
        verify(ledger.saveTransaction({ income: income, amount: amount, payee: payee, category: category, note: "",
                                        cleared: true, date: Date.now() - hoursBefore * 3600000,
                                        accountId: ledger.firstAccountId() }))
    }
    function init() {
        while (everything.count > 0)
            ledger.deleteTransaction(everything.idAt(0))
    }
    function findText(item: var, text: string): var {
        return H.first(item, c => c.text === text && c.visible)
    }
    // The day `days` whole days from now, as the app writes dates.
    function dayText(days: int): string {
        const d = new Date()
        d.setDate(d.getDate() + days)
        return Fmt.date(d.getTime())
    }

    // Return on the date opens only the grid; Return in the payee guesses and moves on.
    function test_aNewLineFromTheKeyboard() {
        addLine(false, "12", "Corner cafe", "Dining out", 48)
        const editor = H.make(testCase, testCase, "TxEditor {}")
        const done = H.spy(testCase, editor, "done")
        editor.sheet = CHSheet.newTx(false)
        tryVerify(() => editor.amountField.field.activeFocus)
        H.type(testCase, "4.5o")
        keyClick(Qt.Key_Return)
        compare([done.count, !!findText(editor, "Not an amount")], [0, true], "the sheet stays open and says why")
        H.retype(testCase, editor.amountField.field, "4.50")
        const date = editor.dateField
        compare(date.button.text, dayText(0), "a new line starts today")
        keyClick(Qt.Key_Tab, Qt.ShiftModifier)
        verify(date.button.activeFocus, "Shift+Tab from the amount reaches the date")
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Return)
        tryCompare(date.popup, "opened", true)
        keyClick(Qt.Key_Escape)
        tryCompare(date.popup, "visible", false)
        compare(done.count, 0, "Escape closes only the grid")
        H.retype(testCase, editor.payeeField.field, "corner CAFE")
        keyClick(Qt.Key_Return)
        compare([editor.category, editor.payeeField.field.activeFocus, done.count], ["Dining out", false, 0],
                "the category guessed, the focus moved on, nothing saved yet")
        editor.amountField.field.forceActiveFocus()
        keyClick(Qt.Key_Return)
        compare(done.count, 1)
        const saved = ledger.transaction(everything.idAt(0))
        compare([Fmt.date(saved.date), saved.payee, saved.category, saved.amount], [dayText(-1), "corner CAFE", "Dining out", "-4.5"])
    }

    function test_changingALineKeepsItsSideAndOffersDelete() {
        addLine(true, "2500", "Label Co", "Royalties", 0)
        const editor = H.make(testCase, testCase, "TxEditor {}")
        editor.sheet = CHSheet.editTx(ledger.transaction(everything.idAt(0)))
        compare([editor.amountField.text, editor.categoryPicker.box.displayText], ["2500.00", "Royalties"])
        verify(findText(editor, "From (who paid you)") && findText(editor, "Delete"))
        H.retype(testCase, editor.amountField.field, "2,450")
        keyClick(Qt.Key_Return)
        compare([everything.count, everything.get(0).amount], [1, "2450"], "changed, not added")
    }

    // Either side opens the whole transfer, and saving changes both. A new one is a journey.
    function test_aTransferAndChangingIt() {
        const editor = H.make(testCase, testCase, "TransferEditor {}", { sheet: CHSheet.transfer() })
        for (const picker of [editor.fromPicker, editor.toPicker]) {
            picker.box.forceActiveFocus()
            keyClick(Qt.Key_Down)
        }
        verify(findText(editor, "Choose two different accounts.") && !editor.canSave)
        verify(ledger.transfer(ledger.firstAccountId(), ledger.accounts[1].id, "250", Date.now(), ""))
        const sheet = CHSheet.editTx(ledger.transaction(everything.idAt(1)))
        const change = H.make(testCase, testCase, "TransferEditor {}", { sheet: sheet })
        waitForRendering(change)
        compare([sheet.kind, change.title], ["transfer", "Change transfer"])
        compare([change.fromPicker.box.displayText, change.toPicker.box.displayText, change.amountField.text],
                ["Main checking", "Savings", "250.00"])
        H.retype(testCase, change.amountField.field, "300")
        keyClick(Qt.Key_Return)
        compare([everything.count, everything.get(0).amount, everything.get(1).amount], [2, "-300", "300"])
    }


    function test_theRegisterLineMenuOpenAndExport() {
        addLine(false, "45.10", "Green Basket", "Groceries", 0)
        addLine(false, "1200", "Landlord", "Rent / mortgage", 1)
        const screen = H.make(testCase, testCase, "TransactionsScreen { anchors.fill: parent }")
        waitForRendering(screen)
        const opened = H.spy(testCase, screen, "openSheet")
        mouseDoubleClickSequence(screen.list.itemAtIndex(0))
        compare(opened.signalArguments[0][0].record.payee, "Green Basket")
        verify(screen.list.activeFocus)
        keyClick(Qt.Key_Return)
        compare(opened.count, 2)
        const pending = H.menuItem(testCase, screen.list.itemAtIndex(0), screen.menu, 0)
        compare(pending.text, "Mark as pending")
        mouseClick(pending)
        tryVerify(() => H.named(screen.list.itemAtIndex(0), "pendingBadge").visible)
        const remove = H.menuItem(testCase, screen.list.itemAtIndex(0), screen.menu, 1)
        compare(remove.text, "Delete")
        mouseClick(remove)
        waitForItemPolished(screen.list)
        compare([screen.list.count, screen.list.itemAtIndex(0).payee], [1, "Landlord"])

        mouseClick(H.named(screen, "exportKey"))
        tryCompare(screen.exportDialog, "visible", true)
        verify(decodeURIComponent(String(screen.exportDialog.selectedFile)).endsWith("/Coinhall transactions.csv"))
        screen.exportDialog.reject()
        screen.exportDialog.selectedFile = "file://" + Store.dir + "/no such folder/out.csv"
        screen.exportDialog.accepted()
        verify(Store.status.startsWith("Could not save: "), Store.status)
    }
}
