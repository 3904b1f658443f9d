import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The register and the transaction sheets, used as a user does: a new line from the
// keyboard, changing a line, moving money, the line menu and the export.
Item {
    id: stage

    width: 1380
    height: 900

    LedgerBridge {
        id: ledger

        store: Store
    }

    TransactionListModel {
        id: everything

        store: Store
    }

    Component {
        id: screenComponent

        TransactionsScreen {
            anchors.fill: parent
        }
    }

    Component {
        id: txEditorComponent

        TxEditor {}
    }

    Component {
        id: transferComponent

        TransferEditor {}
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }

    TestCase {
        id: testCase

        name: "Transactions"
        when: windowShown

        function accountId(name: string): string {
            return ledger.accounts.find(a => a.name === name).id
        }

        // A line `hoursBefore` hours before noon on the 15th of this month, so that the
        // order and the month are the same whatever day the test runs.
        function addLine(income: bool, amount: string, payee: string, category: string, hoursBefore: int) {
            const base = new Date()
            base.setDate(15)
            base.setHours(12, 0, 0, 0)
            verify(ledger.saveTransaction({
                income: income, amount: amount, payee: payee, category: category, note: "", cleared: true,
                date: base.getTime() - hoursBefore * 3600000, accountId: accountId("Main checking")
            }))
        }

        function init() {
            while (everything.count > 0)
                ledger.deleteTransaction(everything.idAt(0))
            Store.status = ""
        }

        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }

        function findText(item: var, text: string): var {
            return H.first(item, c => c.text === text && c.visible)
        }

        function type(text: string) {
            H.type(testCase, text)
        }

        function clearField(field: var) {
            H.retype(testCase, field, "")
        }

        // The payees of the rows the list shows, once it has laid out its latest changes.
        function shownPayees(screen: var): var {
            waitForItemPolished(screen.list)
            const names = []
            for (let i = 0; i < screen.list.count; ++i) {
                const row = screen.list.itemAtIndex(i)
                if (row)
                    names.push(row.payee)
            }
            return names
        }

        function openScreen(): var {
            const screen = createTemporaryObject(screenComponent, stage)
            waitForRendering(screen)
            return screen
        }

        // The day `days` whole days from now, as the app writes dates.
        function dayText(days: int): string {
            const d = new Date()
            d.setDate(d.getDate() + days)
            return Fmt.date(d.getTime())
        }

        // A new line by keyboard: Return saves nothing while the amount is bad; the date
        // sits above the amount and moves by arrows; Return in the payee guesses the
        // category (the payee's history, then the keyword rules) and moves on.
        function test_aNewLineFromTheKeyboard() {
            addLine(false, "12", "Corner cafe", "Dining out", 1)
            const editor = createTemporaryObject(txEditorComponent, stage)
            const done = spyOn(editor, "done")
            editor.sheet = CHSheet.newTx(false)
            tryVerify(() => editor.amountField.field.activeFocus)
            type("4.5o")
            keyClick(Qt.Key_Return)
            compare(done.count, 0, "the sheet stays open")
            verify(findText(editor, "Not an amount"))
            clearField(editor.amountField.field)
            type("4.50")

            const date = editor.dateField
            compare(date.button.text, dayText(0), "a new line starts today")
            keyClick(Qt.Key_Tab, Qt.ShiftModifier)
            verify(date.button.activeFocus, "Shift+Tab from the amount reaches the date")
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Up)
            compare(date.button.text, dayText(-1))
            keyClick(Qt.Key_Return)
            tryCompare(date.popup, "opened", true)
            keyClick(Qt.Key_Escape)
            tryCompare(date.popup, "visible", false)
            compare(done.count, 0, "Return on the date opens the grid, Escape closes only the grid")

            for (const [payee, category] of [["SHELL OIL 123", "Car & gas"], ["corner CAFE", "Dining out"]]) {
                clearField(editor.payeeField.field)
                type(payee)
                keyClick(Qt.Key_Return)
                compare(editor.category, category)
                verify(!editor.payeeField.field.activeFocus, "the focus moved on")
            }
            compare(done.count, 0, "nothing saved yet")
            editor.amountField.field.forceActiveFocus()
            keyClick(Qt.Key_Return)
            compare(done.count, 1)
            const saved = ledger.transaction(everything.idAt(0))
            compare([Fmt.date(saved.date), saved.payee, saved.category], [dayText(-1), "corner CAFE", "Dining out"])
        }

        function test_changingALineKeepsItsSideAndOffersDelete() {
            addLine(true, "2500", "Label Co", "Royalties", 0)
            const editor = createTemporaryObject(txEditorComponent, stage)
            editor.sheet = CHSheet.editTx(ledger.transaction(everything.idAt(0)))
            compare([editor.amountField.text, editor.categoryPicker.box.displayText], ["2500.00", "Royalties"])
            verify(findText(editor, "From (who paid you)") && findText(editor, "Delete"))
            clearField(editor.amountField.field)
            type("2,450")
            keyClick(Qt.Key_Return)
            compare(everything.count, 1, "changed, not added")
            compare(everything.get(0).amount, "2450")
        }

        function test_aTransferMakesTwoLines() {
            const editor = createTemporaryObject(transferComponent, stage)
            const done = spyOn(editor, "done")
            editor.sheet = CHSheet.transfer()
            editor.fromPicker.box.forceActiveFocus()
            keyClick(Qt.Key_Down)
            compare(editor.fromPicker.box.displayText, "Main checking")
            editor.toPicker.box.forceActiveFocus()
            keyClick(Qt.Key_Down)
            verify(findText(editor, "Choose two different accounts."))
            verify(!editor.canSave)
            keyClick(Qt.Key_Down)
            compare(editor.toPicker.box.displayText, "Savings")
            editor.amountField.field.forceActiveFocus()
            type("250")
            keyClick(Qt.Key_Return)

            compare(done.count, 1)
            compare(Store.status, "Moved $250.00.")
            compare(everything.count, 2)
            compare(everything.get(0).payee, "Transfer to Savings")
            compare(everything.get(1).payee, "Transfer from Main checking")

            // Either side opens the transfer with both sides, and saving changes both.
            const sheet = CHSheet.editTx(ledger.transaction(everything.idAt(1)))
            compare(sheet.kind, "transfer")
            const change = createTemporaryObject(transferComponent, stage, { sheet: sheet })
            waitForRendering(change)
            compare(change.title, "Change transfer")
            compare([change.fromPicker.box.displayText, change.toPicker.box.displayText, change.amountField.text],
                    ["Main checking", "Savings", "250.00"])
            clearField(change.amountField.field)
            type("300")
            keyClick(Qt.Key_Return)
            compare(Store.status, "Moved $300.00.")
            compare(everything.count, 2)
            compare([everything.get(0).amount, everything.get(1).amount], ["-300", "300"])
        }

        // The line menu marks and deletes, double-click and Return open the line, and the
        // export saves the file or says why not.
        function test_theRegisterLineMenuOpenAndExport() {
            addLine(false, "45.10", "Green Basket", "Groceries", 0)
            addLine(false, "1200", "Landlord", "Rent / mortgage", 1)
            const screen = openScreen()
            const opened = spyOn(screen, "openSheet")
            mouseDoubleClickSequence(screen.list.itemAtIndex(0))
            compare(opened.signalArguments[0][0].record.payee, "Green Basket")
            verify(screen.list.activeFocus)
            keyClick(Qt.Key_Return)
            compare(opened.count, 2)

            mouseClick(screen.list.itemAtIndex(0), 40, 10, Qt.RightButton)
            tryCompare(screen.menu, "opened", true)
            compare(screen.menu.itemAt(0).text, "Mark as pending")
            mouseClick(screen.menu.itemAt(0))
            tryVerify(() => H.named(screen.list.itemAtIndex(0), "pendingBadge").visible)
            mouseClick(screen.list.itemAtIndex(0), 40, 10, Qt.RightButton)
            tryCompare(screen.menu, "opened", true)
            compare(screen.menu.itemAt(1).text, "Delete")
            mouseClick(screen.menu.itemAt(1))
            compare(shownPayees(screen), ["Landlord"])

            mouseClick(H.named(screen, "exportKey"))
            tryCompare(screen.exportDialog, "visible", true)
            verify(decodeURIComponent(String(screen.exportDialog.selectedFile)).endsWith("/Coinhall transactions.csv"))
            screen.exportDialog.reject()
            screen.exportDialog.selectedFile = "file://" + Store.dir + "/no such folder/out.csv"
            screen.exportDialog.accepted()
            verify(Store.status.startsWith("Could not save: "), Store.status)
        }
    }
}
